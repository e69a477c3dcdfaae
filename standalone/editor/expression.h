#pragma once
// A tiny reader and evaluator of the AutoLISP-like expressions a plug-in
// queues for the host. It understands exactly what is needed to load a menu:
// strings, numbers, nil and T, and the functions if, null, not, menugroup,
// command and menucmd. Anything else is an ExpressionError.
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

struct Expr {
  enum class Kind { kNil, kTrue, kString, kNumber, kSymbol, kList } kind = Kind::kNil;
  std::string text;  // string contents or symbol name
  double number = 0;
  std::vector<Expr> items;

  bool isNil() const { return kind == Kind::kNil || (kind == Kind::kList && items.empty()); }
};

// Reads exactly one expression (blanks around it allowed); throws ExpressionError.
Expr readExpression(std::string_view text);
// The expression as the host's command line prints a value ("nil", "T", "\"text\"", 2.5).
std::string printExpression(const Expr& e);

// What the evaluator asks of the host.
class ExpressionHost {
 public:
  virtual ~ExpressionHost() = default;
  virtual bool isMenuGroupLoaded(std::string_view group) = 0;
  // Runs a host command from its evaluated arguments (strings and numbers).
  virtual void command(const std::vector<Expr>& args) = 0;
  // Handles a menucmd string such as "P12=+CORVANE.POP1"; false when it does not apply.
  virtual bool menuCommand(std::string_view text) = 0;
};

// Evaluates an expression read by readExpression; throws ExpressionError for
// functions and symbols it does not know.
Expr evaluateExpression(const Expr& e, ExpressionHost& host);

}  // namespace standalone
