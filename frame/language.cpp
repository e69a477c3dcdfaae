#include "frame/language.h"

namespace frame {

namespace {
// One of the two globals the plug-in keeps; it never changes while a module is loaded.
bool chineseFlag = false;
}  // namespace

bool isChinese() { return chineseFlag; }

void setChinese(bool chinese) { chineseFlag = chinese; }

}  // namespace frame
