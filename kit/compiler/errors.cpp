#include "errors.h"

namespace tp3 {

std::string_view errorText(Error error) {
    switch (error) {
    case Error::none:
        return "No error";
    case Error::semicolonExpected:
        return "; expected";
    case Error::colonExpected:
        return ": expected";
    case Error::commaExpected:
        return ", expected";
    case Error::leftParenthesisExpected:
        return "( expected";
    case Error::rightParenthesisExpected:
        return ") expected";
    case Error::equalExpected:
        return "= expected";
    case Error::assignExpected:
        return ":= expected";
    case Error::leftBracketExpected:
        return "[ expected";
    case Error::rightBracketExpected:
        return "] expected";
    case Error::periodExpected:
        return ". expected";
    case Error::rangeExpected:
        return ".. expected";
    case Error::beginExpected:
        return "BEGIN expected";
    case Error::doExpected:
        return "DO expected";
    case Error::endExpected:
        return "END expected";
    case Error::ofExpected:
        return "OF expected";
    case Error::routineExpected:
        return "PROCEDURE or FUNCTION expected";
    case Error::thenExpected:
        return "THEN expected";
    case Error::toOrDowntoExpected:
        return "TO or DOWNTO expected";
    case Error::booleanExpressionExpected:
        return "Boolean expression expected";
    case Error::fileVariableExpected:
        return "File variable expected";
    case Error::integerConstantExpected:
        return "Integer constant expected";
    case Error::integerExpressionExpected:
        return "Integer expression expected";
    case Error::integerVariableExpected:
        return "Integer variable expected";
    case Error::numericConstantExpected:
        return "Integer or real constant expected";
    case Error::numericExpressionExpected:
        return "Integer or real expression expected";
    case Error::numericVariableExpected:
        return "Integer or real variable expected";
    case Error::pointerVariableExpected:
        return "Pointer variable expected";
    case Error::recordVariableExpected:
        return "Record variable expected";
    case Error::simpleTypeExpected:
        return "Simple type expected";
    case Error::simpleExpressionExpected:
        return "Simple expression expected";
    case Error::stringConstantExpected:
        return "String constant expected";
    case Error::stringExpressionExpected:
        return "String expression expected";
    case Error::stringVariableExpected:
        return "String variable expected";
    case Error::textFileExpected:
        return "Text file expected";
    case Error::typeIdentifierExpected:
        return "Type identifier expected";
    case Error::untypedFileExpected:
        return "Untyped file expected";
    case Error::undefinedLabel:
        return "Undefined label";
    case Error::unknownIdentifier:
        return "Unknown identifier or syntax error";
    case Error::undefinedPointerType:
        return "Undefined type in a pointer declaration";
    case Error::duplicateIdentifier:
        return "Duplicate identifier or label";
    case Error::typeMismatch:
        return "Type mismatch";
    case Error::constantOutOfRange:
        return "Constant out of range";
    case Error::caseLabelType:
        return "Type of case label does not match the selector";
    case Error::operandType:
        return "Operand type does not match the operator";
    case Error::resultType:
        return "Invalid result type";
    case Error::stringLength:
        return "Invalid string length";
    case Error::stringConstantLength:
        return "Length of string constant does not match the type";
    case Error::subrangeBase:
        return "Invalid base type of subrange";
    case Error::lowAboveHigh:
        return "Lower bound greater than upper bound";
    case Error::reservedWord:
        return "Reserved word";
    case Error::illegalAssignment:
        return "Illegal assignment";
    case Error::stringExceedsLine:
        return "String constant exceeds line";
    case Error::integerConstant:
        return "Error in integer constant";
    case Error::realConstant:
        return "Error in real constant";
    case Error::identifierCharacter:
        return "Invalid character in identifier";
    case Error::constantNotAllowed:
        return "Constants are not allowed here";
    case Error::fileOrPointerNotAllowed:
        return "Files and pointers are not allowed here";
    case Error::structuredNotAllowed:
        return "Structured variables are not allowed here";
    case Error::textFileNotAllowed:
        return "Text files are not allowed here";
    case Error::textOrUntypedFileNotAllowed:
        return "Text files and untyped files are not allowed here";
    case Error::untypedFileNotAllowed:
        return "Untyped files are not allowed here";
    case Error::notReadableOrWritable:
        return "Variables of this type cannot be read or written";
    case Error::fileMustBeVar:
        return "Files must be VAR parameters";
    case Error::fileOfFile:
        return "File components may not be files";
    case Error::fieldOrder:
        return "Invalid order of fields";
    case Error::setBase:
        return "Set base type out of range";
    case Error::badGoto:
        return "Invalid GOTO";
    case Error::labelOutsideBlock:
        return "Label not within current block";
    case Error::undefinedForward:
        return "Undefined FORWARD procedure or function";
    case Error::inlineError:
        return "INLINE error";
    case Error::badAbsolute:
        return "Illegal use of ABSOLUTE";
    case Error::overlayForward:
        return "Overlays cannot be FORWARD";
    case Error::overlayDirect:
        return "Overlays are not possible when running in memory";
    case Error::fileNotFound:
        return "File not found";
    case Error::unexpectedEnd:
        return "Unexpected end of source";
    case Error::overlayFile:
        return "Cannot create overlay file";
    case Error::directive:
        return "Invalid compiler directive";
    case Error::outputFile:
        return "Cannot write the output file";
    case Error::includeNesting:
        return "Include files nested too deep";
    case Error::withNesting:
        return "Too many nested WITH statements";
    case Error::outOfMemory:
        return "Memory overflow";
    case Error::tableOverflow:
        return "Compiler overflow";
    }
    return "Unknown error";
}

} // namespace tp3
