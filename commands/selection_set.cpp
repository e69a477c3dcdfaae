#include "commands/selection_set.h"

#include "frame/output.h"

namespace commands {

std::optional<std::vector<host::ObjectId>> selectForCommand(host::Host& host, const SelectionTexts& texts,
                                                            const host::ResBufList& filter) {
  frame::print(host, texts.prompt);
  std::vector<host::ObjectId> ids;
  if (host.editor.ssget("", nullptr, nullptr, &filter, ids) != host::RTNORM) {
    frame::print(host, texts.notSelected);
    return std::nullopt;
  }
  if (ids.empty()) {
    frame::print(host, texts.emptySet);
    return std::nullopt;
  }
  return ids;
}

host::ResBufList singleTypeFilter(const char* dxfName) { return {host::ResBuf::group(0, dxfName)}; }

}  // namespace commands
