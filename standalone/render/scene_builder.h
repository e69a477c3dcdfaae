#pragma once
// Flattens the model space of a drawing into a scene.
#include <vector>

#include "host/drawing.h"
#include "standalone/render/scene.h"

namespace standalone {

struct SceneOptions {
  int pointMode = 0;       // PDMODE of the drawing
  double pointSize = 0;    // PDSIZE of the drawing
  int maxBlockDepth = 16;  // nesting of block references followed; deeper ones are skipped
};

// Every visible entity of model space, block references expanded through
// their blocks (position, scale, rotation, column/row arrays), colours
// resolved by layer and by block.
Scene buildScene(const host::Drawing& drawing, const SceneOptions& options);

// The given entities only, in the given order, drawn as buildScene draws them.
Scene buildSceneOf(const host::Drawing& drawing, const std::vector<host::ObjectId>& ids,
                   const SceneOptions& options);

}  // namespace standalone
