#include "frame/prompts.h"

#include <functional>

namespace frame {

namespace {

std::string chosen(const Text& t) { return std::string(t.chosen()); }

// Asks until the answer is something other than Enter; a keyword is fetched with getInput.
Answer askUntilAnswered(host::Host& host, int bits, std::string_view keywords, const std::function<int()>& ask) {
  Answer answer;
  do {
    host.editor.initGet(bits, keywords);
    answer.result = ask();
  } while (answer.result == host::RTNONE);
  if (answer.result == host::RTKWORD) host.editor.getInput(answer.keyword);
  return answer;
}

}  // namespace

int entSel(host::Host& host, const Text& prompt, host::ObjectId& entity, ge::Point3d& picked) {
  return host.editor.entSel(chosen(prompt), entity, picked);
}

int getDist(host::Host& host, const Text& prompt, double& value, const ge::Point3d* base) {
  return host.editor.getDist(base, chosen(prompt), value);
}

int getInt(host::Host& host, const Text& prompt, int& value) { return host.editor.getInt(chosen(prompt), value); }

int getReal(host::Host& host, const Text& prompt, double& value) {
  return host.editor.getReal(chosen(prompt), value);
}

int getPoint(host::Host& host, const Text& prompt, ge::Point3d& value, const ge::Point3d* base) {
  return host.editor.getPoint(base, chosen(prompt), value);
}

int askInt(host::Host& host, const Text& prompt, int defaultValue, int low, int high, int bits) {
  int value = defaultValue;
  int answer = defaultValue;
  host.editor.initGet(bits, "");
  if (getInt(host, prompt, answer) == host::RTNORM) value = answer;
  return clampToRange(value, low, high);
}

std::optional<double> askDist(host::Host& host, const Text& prompt, const ge::Point3d* base, int bits) {
  double value = 0;
  host.editor.initGet(bits, "");
  if (getDist(host, prompt, value, base) != host::RTNORM) return std::nullopt;
  return value;
}

std::optional<double> askReal(host::Host& host, const Text& prompt, int bits) {
  double value = 0;
  host.editor.initGet(bits, "");
  if (getReal(host, prompt, value) != host::RTNORM) return std::nullopt;
  return value;
}

std::optional<ge::Point3d> askPoint(host::Host& host, const Text& prompt, const ge::Point3d* base, int bits) {
  ge::Point3d value;
  host.editor.initGet(bits, "");
  if (getPoint(host, prompt, value, base) != host::RTNORM) return std::nullopt;
  return value;
}

Answer askIntOrKeyword(host::Host& host, const Text& prompt, std::string_view keywords, int& value, int bits) {
  return askUntilAnswered(host, bits, keywords, [&] {
    int answer = value;
    int result = getInt(host, prompt, answer);
    if (result == host::RTNORM) value = answer;
    return result;
  });
}

Answer askDistOrKeyword(host::Host& host, const Text& prompt, std::string_view keywords, double& value,
                        const ge::Point3d* base, int bits) {
  return askUntilAnswered(host, bits, keywords, [&] {
    double answer = value;
    int result = getDist(host, prompt, answer, base);
    if (result == host::RTNORM) value = answer;
    return result;
  });
}

Answer askPointOrKeyword(host::Host& host, const Text& prompt, std::string_view keywords, ge::Point3d& value,
                         const ge::Point3d* base, int bits) {
  return askUntilAnswered(host, bits, keywords, [&] {
    ge::Point3d answer = value;
    int result = getPoint(host, prompt, answer, base);
    if (result == host::RTNORM) value = answer;
    return result;
  });
}

bool askYesNo(host::Host& host, const Text& prompt, bool defaultAnswer) {
  // The keyword buffer starts as "Yes"; only an RTNORM answer is looked at.
  std::string keyword = "Yes";
  host.editor.initGet(0, "Yes No");
  if (host.editor.getKword(chosen(prompt), keyword) != host::RTNORM) return defaultAnswer;
  return !keyword.empty() && keyword.front() == 'Y';
}

}  // namespace frame
