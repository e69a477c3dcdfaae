#include "standalone/render/scene_builder.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "standalone/render/emitter.h"
#include "standalone/render/projection.h"

namespace standalone {

namespace {

// Line width of ordinary entities on the page, in pixels.
constexpr double kDefaultLineWidthPx = 1.0;
// Pixels per millimetre of lineweight, as a 96 dpi screen shows them.
constexpr double kPixelsPerMm = 96.0 / 25.4;
// Most entities one picture draws: block references nested and arrayed by a
// broken or hostile file could otherwise multiply beyond any memory.
constexpr std::size_t kMaxDrawnEntities = 2'000'000;

// What a block reference passes on to the entities drawn through it.
struct Inherited {
  ge::Matrix3d placement;
  Rgb byBlock = kBlack;
  std::string layer;  // the reference's layer, for entities on layer "0"
  int depth = 0;
  std::vector<host::ObjectId> blockChain;  // blocks being expanded, outermost first
};

class SceneBuilder {
 public:
  SceneBuilder(const host::Drawing& drawing, const SceneOptions& options, Scene& scene)
      : drawing_(drawing), options_(options), scene_(scene) {}

  void drawSpace(host::ObjectId record, const Inherited& from) {
    for (host::ObjectId id : drawing_.entitiesOf(record)) {
      if (drawn_ >= kMaxDrawnEntities) return;
      if (auto entity = drawing_.read(id)) drawEntity(*entity, from);
    }
  }

  void drawEntities(const std::vector<host::ObjectId>& ids) {
    for (host::ObjectId id : ids) {
      if (drawn_ >= kMaxDrawnEntities) return;
      if (auto entity = drawing_.read(id)) drawEntity(*entity, Inherited{});
    }
  }

 private:
  void drawEntity(const host::Entity& e, const Inherited& from) {
    if (e.props.invisible) return;
    // Entities on layer 0 inside a block take the reference's layer.
    const std::string& layer = (e.props.layer == "0" && !from.layer.empty()) ? from.layer : e.props.layer;
    // A frozen layer hides its entities and everything a reference on it
    // shows, whatever their own layers; an off layer hides only its own.
    if (frozen(layer)) return;
    std::optional<host::Color> layerColor = drawing_.layerColor(layer);
    if (layerColor && layerColor->index < 0) return;  // layer off
    Rgb color = resolveColor(e.props.color, from.byBlock, layerColor);
    if (auto* ref = std::get_if<host::BlockReference>(&e.data)) {
      drawReference(*ref, color, layer, from);
      return;
    }
    ++drawn_;
    Emitter out(scene_, from.placement, color, lineWidthPx(e.props.lineweight));
    if (!emitCurve(e.data, out))
      emitAnnotation(e.data, out,
                     {options_.pointMode, options_.pointSize, measurer_,
                      [this](const std::string& style) { return styleFont(style); }});
  }

  void drawReference(const host::BlockReference& ref, const Rgb& color, const std::string& layer,
                     const Inherited& from) {
    if (from.depth >= options_.maxBlockDepth) return;
    auto block = drawing_.findBlock(ref.blockName);
    // A block that contains itself (a broken drawing) is drawn once, not forever.
    if (!block || std::find(from.blockChain.begin(), from.blockChain.end(), *block) != from.blockChain.end()) return;
    ge::Point3d base = drawing_.blockBasePoint(*block);
    ge::Matrix3d ocs = ocsToWorld(ref.normal), turn = ge::Matrix3d::rotation(ref.rotation, ge::kZAxis);
    ge::Matrix3d inBlock = ocs * turn * scaling(ref.scale) * ge::Matrix3d::translation(-base.asVector());
    Inherited inner;
    inner.byBlock = color;
    inner.layer = layer;
    inner.depth = from.depth + 1;
    inner.blockChain = from.blockChain;
    inner.blockChain.push_back(*block);
    int columns = std::max(1, ref.columnCount), rows = std::max(1, ref.rowCount);
    for (int r = 0; r < rows && drawn_ < kMaxDrawnEntities; ++r)
      for (int c = 0; c < columns && drawn_ < kMaxDrawnEntities; ++c) {
        ++drawn_;  // an empty block still costs its copies
        // Array copies are spaced along the reference's turned OCS axes.
        ge::Vector3d cell = ocs.apply(turn.apply(ge::Vector3d{c * ref.columnSpacing, r * ref.rowSpacing, 0}));
        inner.placement = from.placement * ge::Matrix3d::translation(ref.position.asVector() + cell) * inBlock;
        drawSpace(*block, inner);
      }
  }

  // Whether a layer is frozen, asked once per layer.
  bool frozen(const std::string& layer) {
    auto [it, fresh] = frozenLayers_.try_emplace(layer, false);
    if (fresh) it->second = drawing_.isLayerFrozen(layer);
    return it->second;
  }

  // The font of a text style, looked up once per style.
  const std::string& styleFont(const std::string& style) {
    auto it = styleFonts_.find(style);
    if (it == styleFonts_.end()) it = styleFonts_.emplace(style, drawing_.textStyleFont(style).value_or("")).first;
    return it->second;
  }

  static ge::Matrix3d scaling(const ge::Vector3d& s) {
    ge::Matrix3d m;
    m(0, 0) = s.x;
    m(1, 1) = s.y;
    m(2, 2) = s.z;
    return m;
  }

  static double lineWidthPx(int lineweight) {
    // Lineweights are hundredths of a millimetre; thin ones still get one pixel.
    return lineweight > 0 ? std::max(kDefaultLineWidthPx, lineweight / 100.0 * kPixelsPerMm) : kDefaultLineWidthPx;
  }

  const host::Drawing& drawing_;
  const SceneOptions& options_;
  Scene& scene_;
  TextMeasurer measurer_;
  std::map<std::string, std::string> styleFonts_;
  std::map<std::string, bool> frozenLayers_;
  std::size_t drawn_ = 0;
};

}  // namespace

Scene buildScene(const host::Drawing& drawing, const SceneOptions& options) {
  Scene scene;
  SceneBuilder(drawing, options, scene).drawSpace(drawing.modelSpace(), Inherited{});
  return scene;
}

Scene buildSceneOf(const host::Drawing& drawing, const std::vector<host::ObjectId>& ids,
                   const SceneOptions& options) {
  Scene scene;
  SceneBuilder(drawing, options, scene).drawEntities(ids);
  return scene;
}

}  // namespace standalone
