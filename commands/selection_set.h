#pragma once
// The selection every batch command opens with: its own prompt, a type
// filter, and its own "nothing selected" messages.
#include <optional>
#include <vector>

#include "frame/text.h"
#include "host/host.h"

namespace commands {

// The count line of the batch commands that report how many curves they processed.
inline constexpr frame::Text kProcessed{"\nProcessed <%d > curve(s) OK.", "\n处理了< %d >根曲线。 "};

struct SelectionTexts {
  frame::Text prompt;
  frame::Text notSelected;  // the selection failed or was cancelled
  frame::Text emptySet;     // the set came back empty
};

// Prints the prompt and selects with the filter; prints the matching message
// and gives nothing when nothing was selected.
std::optional<std::vector<host::ObjectId>> selectForCommand(host::Host& host, const SelectionTexts& texts,
                                                            const host::ResBufList& filter);

// A filter of exactly one type name, without the or-brackets.
host::ResBufList singleTypeFilter(const char* dxfName);

}  // namespace commands
