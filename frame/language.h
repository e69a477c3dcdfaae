#pragma once
// The process-wide language flag: true selects the Chinese literal of every
// message pair, false the English one. It is set once when the plug-in is
// initialised (from the stored value ChineseVersion) and only read afterwards.

namespace frame {

// True when Chinese texts are shown.
bool isChinese();
// Set by the plug-in's initialisation; tests use it to switch languages.
void setChinese(bool chinese);

}  // namespace frame
