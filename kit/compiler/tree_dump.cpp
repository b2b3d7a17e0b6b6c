#include "tree_dump.h"

#include "standard_names.h"

namespace tp3 {
namespace {

constexpr const char* operatorNames[] = {"?",  "-",   "not", "not", "+", "-",  "*", "/",  "div", "mod", "and",
                                         "or", "xor", "shl", "shr", "=", "<>", "<", "<=", ">",   ">=",  "in"};

constexpr const char* routineNames[] = {
    "none",
    "selectOutput",
    "writeInteger",
    "writeChar",
    "writeBoolean",
    "writeString",
    "writeReal",
    "writeLine",
    "selectInput",
    "readInteger",
    "readChar",
    "readString",
    "readReal",
    "readLine",
    "readBegin",
    "readEnd",
    "abs",
    "sqr",
    "odd",
    "pred",
    "succ",
    "hi",
    "lo",
    "swap",
    "upCase",
    "random",
    "randomLimit",
    "randomize",
    "length",
    "copy",
    "pos",
    "concat",
    "deleteChars",
    "insert",
    "strInteger",
    "strReal",
    "valInteger",
    "valReal",
    "addressOf",
    "move",
    "fillChar",
    "memAvail",
    "maxAvail",
    "newPointer",
    "disposePointer",
    "getMem",
    "freeMem",
    "mark",
    "release",
    "halt",
    "bdos",
    "bdosHL",
    "bios",
    "biosHL",
    "chain",
    "execute",
    "paramCount",
    "paramStr",
    "ioResult",
    "clrScr",
    "clrEol",
    "gotoXY",
    "insLine",
    "delLine",
    "lowVideo",
    "normVideo",
    "highVideo",
    "crtInit",
    "crtExit",
    "delay",
    "keyPressed",
    "sqrt",
    "sin",
    "cos",
    "arcTan",
    "ln",
    "exp",
    "frac",
    "intPart",
    "round",
    "trunc",
    "fileAssignText",
    "fileAssignTyped",
    "fileAssignUntyped",
    "fileReset",
    "fileRewrite",
    "fileClose",
    "fileErase",
    "fileFlush",
    "fileRename",
    "fileSeek",
    "filePosition",
    "fileSize",
    "fileEof",
    "fileEoln",
    "fileSeekEof",
    "fileSeekEoln",
    "fileRead",
    "fileWrite",
    "fileBlockRead",
    "fileBlockWrite",
    "selectStandardOutput",
    "selectStandardInput",
    "ovrDrive",
};
static_assert(sizeof(routineNames) / sizeof(routineNames[0]) ==
              static_cast<std::size_t>(StandardRoutine::last) + 1);

std::string nameOf(const Symbol* symbol) {
    if (symbol == nullptr)
        return "?";
    if (symbol->name == nullptr)
        return "@" + std::to_string(symbol->ordinal);
    const std::string name(symbol->name->text);
    return symbol->kind == SymbolKind::variable && symbol->storage == StorageKind::result ? name + "'" : name;
}

std::string typeName(const Type* type) {
    switch (type->kind) {
    case TypeKind::none:
        return "none";
    case TypeKind::integer:
        return type->size == 1 ? "byte" : "integer";
    case TypeKind::character:
        return "char";
    case TypeKind::boolean:
        return "boolean";
    case TypeKind::enumeration:
        return "enumeration";
    case TypeKind::real:
        return "real";
    case TypeKind::string:
        return "string" + std::to_string(type->high);
    case TypeKind::array:
        return "array";
    case TypeKind::record:
        return "record";
    case TypeKind::set:
        return "set";
    case TypeKind::pointer:
        return "pointer";
    default:
        return "file";
    }
}

std::string quoted(const char* text, std::size_t length) {
    std::string result = "'";
    for (std::size_t i = 0; i < length; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c < ' ' || c > '~')
            result += "\\" + std::to_string(c);
        else
            result += text[i];
    }
    return result + "'";
}

std::string hexBytes(const char* bytes, std::size_t count) {
    std::string result = "$";
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned value = static_cast<unsigned char>(bytes[i]);
        result += "0123456789ABCDEF"[value >> 4];
        result += "0123456789ABCDEF"[value & 15];
    }
    return result;
}

std::string ordinalText(const Expr& expr) {
    const Type* host = expr.type->host();
    switch (host->kind) {
    case TypeKind::boolean:
        return expr.value != 0 ? "TRUE" : "FALSE";
    case TypeKind::character: {
        const char character = static_cast<char>(expr.value);
        return "c" + quoted(&character, 1);
    }
    case TypeKind::pointer:
        return "nil" + (expr.value != 0 ? std::to_string(expr.value) : std::string());
    case TypeKind::enumeration:
        for (const Symbol* symbol = host->members; symbol != nullptr; symbol = symbol->next)
            if (symbol->value == expr.value)
                return nameOf(symbol);
        [[fallthrough]];
    default:
        return std::to_string(expr.value);
    }
}

std::string list(std::string head, const Expr* first) {
    for (const Expr* item = first; item != nullptr; item = item->next)
        head += " " + dumpExpression(item);
    return "(" + head + ")";
}

std::string inlineText(const InlineItem* item) {
    std::string result;
    for (; item != nullptr; item = item->next) {
        result += result.empty() ? "" : " / ";
        if (item->size != InlineItem::Size::automatic)
            result += item->size == InlineItem::Size::byte ? "<" : ">";
        if (item->symbol != nullptr)
            result += nameOf(item->symbol) + "+";
        if (item->locationCounter)
            result += "*+";
        result += std::to_string(item->constant);
    }
    return result;
}

std::string labelsText(const CaseLabel* label) {
    std::string result;
    for (; label != nullptr; label = label->next) {
        result += " " + std::to_string(label->low);
        if (label->high != label->low)
            result += ".." + std::to_string(label->high);
    }
    return result;
}

} // namespace

std::string dumpExpression(const Expr* expr) {
    if (expr == nullptr)
        return "()";
    const std::string check = expr->checked ? "!" : "";
    const auto left = [&] { return dumpExpression(expr->left); };
    switch (expr->kind) {
    case ExprKind::ordinal:
        return ordinalText(*expr);
    case ExprKind::realConstant:
        return "real" + hexBytes(expr->text, 6);
    case ExprKind::string:
        return quoted(expr->text, expr->textLength);
    case ExprKind::setConstant:
        return "set" + hexBytes(expr->text, 32);
    case ExprKind::variable:
        return nameOf(expr->symbol);
    case ExprKind::index:
        return "(index" + check + " " + left() + " " + dumpExpression(expr->right) + ")";
    case ExprKind::character:
        return "(char" + check + " " + left() + " " + dumpExpression(expr->right) + ")";
    case ExprKind::field:
        return "(field " + left() + " " + std::to_string(expr->value) + ")";
    case ExprKind::dereference:
        return "(^ " + left() + ")";
    case ExprKind::memory:
        return "(mem " + left() + ")";
    case ExprKind::port:
        return "(port " + left() + ")";
    case ExprKind::routineAddress:
        return "(address " + nameOf(expr->symbol) + ")";
    case ExprKind::retypeVariable:
        return "(as " + typeName(expr->type) + " " + left() + ")";
    case ExprKind::unary:
        return std::string("(") + operatorNames[static_cast<std::size_t>(expr->op)] + " " + left() + ")";
    case ExprKind::binary:
        return std::string("(") + operatorNames[static_cast<std::size_t>(expr->op)] + " " + left() + " " +
               dumpExpression(expr->right) + ")";
    case ExprKind::convert:
        return "(" + typeName(expr->type) + check + " " + left() + ")";
    case ExprKind::call:
        return list(nameOf(expr->symbol), expr->left);
    case ExprKind::standardCall:
        return list(routineNames[expr->value] + check, expr->left);
    case ExprKind::setConstructor:
        return list("set", expr->left);
    case ExprKind::range:
        return "(.. " + left() + " " + dumpExpression(expr->right) + ")";
    }
    return "?";
}

std::string dumpStatements(const Stmt* first, int indentation) {
    std::string result;
    for (const Stmt* stmt = first; stmt != nullptr; stmt = stmt->next) {
        const std::string indent(static_cast<std::size_t>(indentation) * 2, ' ');
        const auto line = [&](const std::string& text) { result += indent + text + "\n"; };
        const auto nested = [&](const Stmt* inner) { result += dumpStatements(inner, indentation + 1); };
        const Stmt* other = nullptr;
        switch (stmt->kind) {
        case StmtKind::empty:
            line("empty");
            break;
        case StmtKind::assign:
            line(dumpExpression(stmt->target) + " := " + dumpExpression(stmt->value));
            break;
        case StmtKind::call:
            line(dumpExpression(stmt->value));
            break;
        case StmtKind::block:
            line("block");
            nested(stmt->body);
            break;
        case StmtKind::conditional:
            line("if " + dumpExpression(stmt->value));
            nested(stmt->body);
            other = stmt->other;
            // A chain of else if may be longer than the stack is deep.
            for (; other != nullptr && other->kind == StmtKind::conditional; other = other->other) {
                line("else if " + dumpExpression(other->value));
                nested(other->body);
            }
            if (other != nullptr) {
                line("else");
                nested(other);
            }
            break;
        case StmtKind::caseOf:
            line("case " + dumpExpression(stmt->value));
            nested(stmt->body);
            if (stmt->other != nullptr) {
                line("else");
                nested(stmt->other);
            }
            break;
        case StmtKind::caseArm:
            line("arm" + labelsText(stmt->labels));
            nested(stmt->body);
            break;
        case StmtKind::whileDo:
            line("while " + dumpExpression(stmt->value));
            nested(stmt->body);
            break;
        case StmtKind::repeatUntil:
            line("repeat");
            nested(stmt->body);
            line("until " + dumpExpression(stmt->value));
            break;
        case StmtKind::forLoop:
            line("for " + dumpExpression(stmt->target) + " := " + dumpExpression(stmt->value) +
                 (stmt->down ? " downto " : " to ") + dumpExpression(stmt->limit));
            nested(stmt->body);
            break;
        case StmtKind::with:
            line("with " + dumpExpression(stmt->target) + " := " + dumpExpression(stmt->value));
            nested(stmt->body);
            break;
        case StmtKind::gotoLabel:
            line("goto " + nameOf(stmt->symbol));
            break;
        case StmtKind::label:
            line("label " + nameOf(stmt->symbol));
            break;
        case StmtKind::exit:
            line("exit");
            break;
        case StmtKind::inlineCode:
            line("inline " + inlineText(stmt->code));
            break;
        }
    }
    return result;
}

} // namespace tp3
