// CLASS entries for the classes of objects made while the drawing is open.
#include "standalone/db/class_counts.h"
#include "standalone/db/database.h"
#include "standalone/db/dxf_tags.h"
#include "standalone/db/tag_record.h"

namespace standalone {

void DrawingDatabase::declareClass(const std::string& dxfName, const std::string& cppName,
                                   const std::string& appName) {
  if (!hasSubclassMarkers(c_.version)) return;  // R12 has no CLASSES section
  for (const TagRecord& r : c_.classes)
    if (classDxfName(r) == dxfName) return;
  // A class of non-graphical objects without proxy capabilities.
  TagList tags{{0, "CLASS"}, {1, dxfName}, {2, cppName}, {3, appName}, {90, "0"}};
  if (c_.version >= "AC1018") tags.push_back({91, "0"});
  tags.push_back({280, "0"});
  tags.push_back({281, "0"});
  // Counted as none at load, so the writer puts in the live count.
  c_.classInstancesAtLoad.resize(c_.classes.size(), 0);
  c_.classes.push_back(makeRecord(std::move(tags), c_.encoding()));
  c_.classInstancesAtLoad.push_back(0);
}

}  // namespace standalone
