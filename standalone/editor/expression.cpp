#include "standalone/editor/expression.h"

#include "standalone/editor/answer_parse.h"
#include "standalone/editor/errors.h"

namespace standalone {

namespace {

constexpr int kMaxDepth = 64;

Expr make(Expr::Kind kind, std::string text = {}, double number = 0) {
  Expr e;
  e.kind = kind;
  e.text = std::move(text);
  e.number = number;
  return e;
}

struct Reader {
  std::string_view text;
  std::size_t pos = 0;

  void skipBlanks() {
    while (pos < text.size() && (text[pos] == ' ' || text[pos] == '\t' || text[pos] == '\n' || text[pos] == '\r'))
      ++pos;
  }
  [[noreturn]] void fail(const std::string& why) const {
    throw ExpressionError(why + " at character " + std::to_string(pos + 1));
  }
  Expr read(int depth) {
    if (depth > kMaxDepth) fail("expression nested too deeply");
    skipBlanks();
    if (pos >= text.size()) fail("expression ends early");
    char c = text[pos];
    if (c == '(') return readList(depth);
    if (c == ')') fail("unexpected )");
    if (c == '"') return readString();
    return readAtom();
  }
  Expr readList(int depth) {
    ++pos;
    Expr list = make(Expr::Kind::kList);
    while (true) {
      skipBlanks();
      if (pos >= text.size()) fail("missing )");
      if (text[pos] == ')') {
        ++pos;
        return list;
      }
      list.items.push_back(read(depth + 1));
    }
  }
  Expr readString() {
    ++pos;
    Expr s = make(Expr::Kind::kString);
    while (pos < text.size() && text[pos] != '"') {
      char c = text[pos++];
      if (c == '\\') {
        if (pos >= text.size()) break;
        char e = text[pos++];
        c = e == 'n' ? '\n' : e == 't' ? '\t' : e == 'r' ? '\r' : e;
      }
      s.text += c;
    }
    if (pos >= text.size()) fail("missing closing quote");
    ++pos;
    return s;
  }
  Expr readAtom() {
    std::size_t start = pos;
    while (pos < text.size() && text[pos] != ' ' && text[pos] != '\t' && text[pos] != '\n' && text[pos] != '\r' &&
           text[pos] != '(' && text[pos] != ')' && text[pos] != '"')
      ++pos;
    std::string_view atom = text.substr(start, pos - start);
    if (std::optional<double> v = parseReal(atom)) return make(Expr::Kind::kNumber, {}, *v);
    std::string upper = toUpperAscii(atom);
    if (upper == "NIL") return make(Expr::Kind::kNil);
    if (upper == "T") return make(Expr::Kind::kTrue);
    return make(Expr::Kind::kSymbol, upper);
  }
};

Expr truth(bool b) { return make(b ? Expr::Kind::kTrue : Expr::Kind::kNil); }

const Expr& argument(const Expr& call, std::size_t i, const std::string& fn) {
  if (call.items.size() <= i) throw ExpressionError("too few arguments to " + fn);
  return call.items[i];
}

Expr stringArgument(const Expr& call, ExpressionHost& host, const std::string& fn) {
  if (call.items.size() != 2) throw ExpressionError(fn + " takes one argument");
  Expr v = evaluateExpression(call.items[1], host);
  if (v.kind != Expr::Kind::kString) throw ExpressionError(fn + " needs a string");
  return v;
}

}  // namespace

Expr readExpression(std::string_view text) {
  Reader r{text};
  Expr e = r.read(0);
  r.skipBlanks();
  if (r.pos != text.size()) r.fail("text after the expression");
  return e;
}

std::string printExpression(const Expr& e) {
  switch (e.kind) {
    case Expr::Kind::kNil:
      return "nil";
    case Expr::Kind::kTrue:
      return "T";
    case Expr::Kind::kString:
      return "\"" + e.text + "\"";
    case Expr::Kind::kNumber:
      return displayReal(e.number);
    case Expr::Kind::kSymbol:
      return e.text;
    case Expr::Kind::kList: {
      if (e.items.empty()) return "nil";
      std::string out = "(";
      for (std::size_t i = 0; i < e.items.size(); ++i) out += (i ? " " : "") + printExpression(e.items[i]);
      return out + ")";
    }
  }
  return "nil";
}

Expr evaluateExpression(const Expr& e, ExpressionHost& host) {
  switch (e.kind) {
    case Expr::Kind::kNil:
    case Expr::Kind::kTrue:
    case Expr::Kind::kString:
    case Expr::Kind::kNumber:
      return e;
    case Expr::Kind::kSymbol:
      throw ExpressionError("unknown symbol " + e.text);
    case Expr::Kind::kList:
      break;
  }
  if (e.items.empty()) return {};
  const Expr& head = e.items.front();
  if (head.kind != Expr::Kind::kSymbol) throw ExpressionError("not a function: " + printExpression(head));
  const std::string& fn = head.text;
  if (fn == "IF") {
    if (e.items.size() < 3 || e.items.size() > 4) throw ExpressionError("if takes two or three arguments");
    if (!evaluateExpression(e.items[1], host).isNil()) return evaluateExpression(e.items[2], host);
    return e.items.size() == 4 ? evaluateExpression(e.items[3], host) : Expr{};
  }
  if (fn == "NULL" || fn == "NOT") {
    if (e.items.size() != 2) throw ExpressionError(toUpperAscii(fn) + " takes one argument");
    return truth(evaluateExpression(argument(e, 1, fn), host).isNil());
  }
  if (fn == "MENUGROUP") {
    Expr name = stringArgument(e, host, "menugroup");
    return host.isMenuGroupLoaded(name.text) ? name : Expr{};
  }
  if (fn == "MENUCMD") {
    Expr text = stringArgument(e, host, "menucmd");
    if (!host.menuCommand(text.text)) throw ExpressionError("menucmd cannot do \"" + text.text + "\"");
    return {};
  }
  if (fn == "COMMAND") {
    std::vector<Expr> args;
    for (std::size_t i = 1; i < e.items.size(); ++i) {
      Expr v = evaluateExpression(e.items[i], host);
      if (v.kind != Expr::Kind::kString && v.kind != Expr::Kind::kNumber)
        throw ExpressionError("command takes strings and numbers");
      args.push_back(std::move(v));
    }
    host.command(args);
    return {};
  }
  throw ExpressionError("the function " + fn + " is not supported");
}

}  // namespace standalone
