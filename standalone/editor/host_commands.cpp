#include "standalone/editor/host_commands.h"

#include "standalone/editor/answer_parse.h"
#include "standalone/editor/errors.h"
#include "standalone/editor/expression.h"

namespace standalone {

namespace {

// Answers from the tokens a plug-in sends to a host command.
class TokenAnswers : public AnswerSource {
 public:
  explicit TokenAnswers(std::vector<std::string> tokens) : tokens_(std::move(tokens)) {}
  std::optional<std::string> nextWord() override {
    if (next_ >= tokens_.size()) return std::nullopt;
    return tokens_[next_++];
  }
  std::optional<std::string> nextLine() override { return nextWord(); }
  bool echoesAnswers() const override { return true; }
  bool atEnd() override { return next_ >= tokens_.size(); }

 private:
  std::vector<std::string> tokens_;
  std::size_t next_ = 0;
};

// Runs queued expressions against the host.
class ExpressionBridge : public ExpressionHost {
 public:
  ExpressionBridge(HostCommandRunner& runner, MenuSet& menus) : runner_(runner), menus_(menus) {}
  bool isMenuGroupLoaded(std::string_view group) override { return runner_.isMenuGroupLoaded(group); }
  void command(const std::vector<Expr>& args) override {
    host::ResBufList tokens;
    for (const Expr& a : args)
      tokens.push_back(a.kind == Expr::Kind::kString ? host::ResBuf::text(a.text) : host::ResBuf::real(a.number));
    runner_.command(tokens);
  }
  // "P<n>=+GROUP.ALIAS" puts a pop-up on the menu bar at position n.
  bool menuCommand(std::string_view text) override {
    std::string upper = toUpperAscii(text);
    std::size_t eq = upper.find("=+");
    if (!upper.starts_with("P") || eq == std::string::npos) return false;
    std::optional<int> position = parseInteger(std::string_view(upper).substr(1, eq - 1));
    std::string_view target = std::string_view(upper).substr(eq + 2);
    std::size_t dot = target.find('.');
    if (!position || dot == std::string_view::npos) return false;
    return menus_.insertPopup(*position, target.substr(0, dot), target.substr(dot + 1));
  }

 private:
  HostCommandRunner& runner_;
  MenuSet& menus_;
};

}  // namespace

int shortVariable(const host::SystemVariables& vars, std::string_view name, int fallback) {
  host::ResBuf v;
  if (vars.getVar(name, v) != host::RTNORM) return fallback;
  const auto* s = std::get_if<std::int16_t>(&v.value);
  return s ? *s : fallback;
}

std::string tokenText(const host::ResBuf& token) {
  if (const auto* s = std::get_if<std::string>(&token.value)) return *s;
  if (const auto* d = std::get_if<double>(&token.value)) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.17g", *d);
    return buf;
  }
  if (const auto* i = std::get_if<std::int16_t>(&token.value)) return std::to_string(*i);
  if (const auto* l = std::get_if<std::int32_t>(&token.value)) return std::to_string(*l);
  if (const auto* p = std::get_if<ge::Point2d>(&token.value)) {
    char buf[80];
    std::snprintf(buf, sizeof buf, "%.17g,%.17g", p->x, p->y);
    return buf;
  }
  if (const auto* p = std::get_if<ge::Point3d>(&token.value)) {
    char buf[120];
    std::snprintf(buf, sizeof buf, "%.17g,%.17g,%.17g", p->x, p->y, p->z);
    return buf;
  }
  if (const auto* id = std::get_if<host::ObjectId>(&token.value)) {
    char buf[24];
    std::snprintf(buf, sizeof buf, "#%llX", static_cast<unsigned long long>(id->value));
    return buf;
  }
  return {};  // RTNONE: Enter
}

HostCommandRunner::HostCommandRunner(HostCommandContext context, CommandRegistry& registry)
    : context_(context), registry_(registry) {}

void HostCommandRunner::addHostCommand(std::string_view name, HostCommand command) {
  table_[toUpperAscii(name)] = std::move(command);
}

bool HostCommandRunner::hasHostCommand(std::string_view name) const { return table_.count(toUpperAscii(name)) > 0; }

bool HostCommandRunner::runTyped(std::string_view typed) {
  std::string_view name = typed;
  bool global = false, builtIn = false;
  while (!name.empty() && (name.front() == '_' || name.front() == '.')) {
    (name.front() == '_' ? global : builtIn) = true;
    name.remove_prefix(1);
  }
  // Brackets one command for the undo history, also when it throws.
  struct Bracket {
    const HostCommandRunner& runner;
    Bracket(const HostCommandRunner& r, const std::string& label) : runner(r) {
      if (runner.begin_) runner.begin_(label);
    }
    ~Bracket() {
      if (runner.end_) runner.end_();
    }
    Bracket(const Bracket&) = delete;
    Bracket& operator=(const Bracket&) = delete;
  };
  if (!builtIn && !name.empty()) {
    if (const CommandEntry* entry = registry_.find(name, global)) {
      host::CommandHandler handler = entry->handler;  // the table may change while it runs
      Bracket bracket(*this, toUpperAscii(entry->globalName));
      handler();
      return true;
    }
  }
  auto it = table_.find(toUpperAscii(name));
  if (it == table_.end()) {
    context_.editor.print("Unknown command \"" + toUpperAscii(typed) + "\".  Press F1 for help.\n");
    return false;
  }
  HostCommand command = it->second;
  Bracket bracket(*this, it->first);
  command(context_);
  return true;
}

int HostCommandRunner::command(const host::ResBufList& tokens) {
  std::vector<std::string> words;
  for (const host::ResBuf& t : tokens) words.push_back(tokenText(t));
  TokenAnswers answers(std::move(words));
  bool quiet = shortVariable(context_.sysvars, "CMDECHO", 1) == 0;
  context_.editor.pushSource(answers, true, quiet);
  int rc = host::RTNORM;
  try {
    while (!answers.atEnd()) {
      std::optional<std::string> name = answers.nextWord();
      if (!name || name->empty()) continue;  // Enter between commands
      if (!quiet) {
        context_.editor.transcript().prompt("Command: ");
        context_.editor.transcript().answer(*name);
      }
      if (!runTyped(*name)) {
        rc = host::RTERROR;
        break;
      }
    }
  } catch (...) {
    context_.editor.popSource();
    throw;
  }
  // A command that asked for more than the tokens gave was cancelled.
  if (context_.editor.popSource() && rc == host::RTNORM) rc = host::RTCAN;
  return rc;
}

void HostCommandRunner::queueExpression(std::string_view expression) { queue_.emplace_back(expression); }

bool HostCommandRunner::isMenuGroupLoaded(std::string_view group) const { return context_.menus.isLoaded(group); }

void HostCommandRunner::runQueuedExpressions() {
  ExpressionBridge bridge(*this, context_.menus);
  while (!queue_.empty()) {
    std::string text = std::move(queue_.front());
    queue_.pop_front();
    Transcript& t = context_.editor.transcript();
    t.prompt("Command: ");
    t.answer(text);
    try {
      Expr result = evaluateExpression(readExpression(text), bridge);
      t.print(printExpression(result) + "\n");
    } catch (const ExpressionError& e) {
      t.print(std::string("; error: ") + e.what() + "\n");
    }
  }
}

}  // namespace standalone
