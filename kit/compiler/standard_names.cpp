#include "standard_names.h"

namespace tp3 {
namespace {

using enum StandardRoutine;
using Shape = CallShape;
constexpr FeatureNeed always = FeatureNeed::none;
constexpr FeatureNeed reals = FeatureNeed::reals;
constexpr FeatureNeed heap = FeatureNeed::heap;
constexpr FeatureNeed files = FeatureNeed::files;

constexpr StandardName table[] = {
    {"ABS", Shape::numeric, StandardRoutine::abs, always},
    {"ADDR", Shape::addrFunction, addressOf, always},
    {"ARCTAN", Shape::realToReal, arcTan, reals},
    {"ASSIGN", Shape::assignFile, fileAssignText, files},
    {"BDOS", Shape::system, bdos, always},
    {"BDOSHL", Shape::system, bdosHL, always},
    {"BIOS", Shape::system, bios, always},
    {"BIOSHL", Shape::system, biosHL, always},
    {"BLOCKREAD", Shape::blockTransfer, fileBlockRead, files},
    {"BLOCKWRITE", Shape::blockTransfer, fileBlockWrite, files},
    {"CHAIN", Shape::anyFile, chain, files},
    {"CHR", Shape::chrFunction, none, always},
    {"CLOSE", Shape::anyFile, fileClose, files},
    {"CLREOL", Shape::none, clrEol, always},
    {"CLRSCR", Shape::none, clrScr, always},
    {"CONCAT", Shape::concatFunction, concat, always},
    {"COPY", Shape::copyFunction, copy, always},
    {"COS", Shape::realToReal, StandardRoutine::cos, reals},
    {"CRTEXIT", Shape::none, crtExit, always},
    {"CRTINIT", Shape::none, crtInit, always},
    {"DELAY", Shape::integer, delay, always},
    {"DELETE", Shape::deleteProcedure, deleteChars, always},
    {"DELLINE", Shape::none, delLine, always},
    {"DISPOSE", Shape::pointer, disposePointer, heap},
    {"EOF", Shape::eofFunction, fileEof, files},
    {"EOLN", Shape::textFunction, fileEoln, files},
    {"ERASE", Shape::anyFile, fileErase, files},
    {"EXECUTE", Shape::anyFile, execute, files},
    {"EXIT", Shape::exitProcedure, none, always},
    {"EXP", Shape::realToReal, StandardRoutine::exp, reals},
    {"FILEPOS", Shape::filePlace, filePosition, files},
    {"FILESIZE", Shape::filePlace, fileSize, files},
    {"FILLCHAR", Shape::fillCharProcedure, fillChar, always},
    {"FLUSH", Shape::flushFile, fileFlush, files},
    {"FRAC", Shape::realToReal, frac, reals},
    {"FREEMEM", Shape::pointerSize, freeMem, heap},
    {"GETMEM", Shape::pointerSize, getMem, heap},
    {"GOTOXY", Shape::twoIntegers, gotoXY, always},
    {"HALT", Shape::none, halt, always},
    {"HI", Shape::integerToInteger, hi, always},
    {"HIGHVIDEO", Shape::none, highVideo, always},
    {"INSERT", Shape::insertProcedure, insert, always},
    {"INSLINE", Shape::none, insLine, always},
    {"INT", Shape::realToReal, intPart, reals},
    {"IORESULT", Shape::integerResult, ioResult, always},
    {"KEYPRESSED", Shape::booleanResult, keyPressed, always},
    {"LENGTH", Shape::lengthFunction, length, always},
    {"LN", Shape::realToReal, ln, reals},
    {"LO", Shape::integerToInteger, lo, always},
    {"LOWVIDEO", Shape::none, lowVideo, always},
    {"MARK", Shape::heapMark, mark, heap},
    {"MAXAVAIL", Shape::integerResult, maxAvail, heap},
    {"MEM", Shape::memoryArray, none, always},
    {"MEMAVAIL", Shape::integerResult, memAvail, heap},
    {"MOVE", Shape::moveProcedure, move, always},
    {"NEW", Shape::pointer, newPointer, heap},
    {"NORMVIDEO", Shape::none, normVideo, always},
    {"ODD", Shape::integerToBoolean, odd, always},
    {"ORD", Shape::ordFunction, none, always},
    {"OVRDRIVE", Shape::integer, ovrDrive, always},
    {"PARAMCOUNT", Shape::integerResult, paramCount, always},
    {"PARAMSTR", Shape::integerToString, paramStr, always},
    {"PORT", Shape::portArray, none, always},
    {"POS", Shape::posFunction, pos, always},
    {"PRED", Shape::ordinal, pred, always},
    {"PTR", Shape::ptrFunction, none, always},
    {"RANDOM", Shape::randomFunction, randomLimit, always},
    {"RANDOMIZE", Shape::none, randomize, always},
    {"READ", Shape::read, none, always},
    {"READLN", Shape::readLine, readLine, always},
    {"RELEASE", Shape::heapMark, release, heap},
    {"RENAME", Shape::renameFile, fileRename, files},
    {"RESET", Shape::openFile, fileReset, files},
    {"REWRITE", Shape::openFile, fileRewrite, files},
    {"ROUND", Shape::realToInteger, StandardRoutine::round, reals},
    {"SEEK", Shape::seekFile, fileSeek, files},
    {"SEEKEOF", Shape::textFunction, fileSeekEof, files},
    {"SEEKEOLN", Shape::textFunction, fileSeekEoln, files},
    {"SIN", Shape::realToReal, StandardRoutine::sin, reals},
    {"SIZEOF", Shape::sizeOfFunction, none, always},
    {"SQR", Shape::numeric, sqr, always},
    {"SQRT", Shape::realToReal, StandardRoutine::sqrt, reals},
    {"STR", Shape::strProcedure, strInteger, always},
    {"SUCC", Shape::ordinal, succ, always},
    {"SWAP", Shape::integerToInteger, StandardRoutine::swap, always},
    {"TRUNC", Shape::realToInteger, StandardRoutine::trunc, reals},
    {"UPCASE", Shape::charToChar, upCase, always},
    {"VAL", Shape::valProcedure, valInteger, always},
    {"WRITE", Shape::write, none, always},
    {"WRITELN", Shape::writeLine, writeLine, always},
};

constexpr StandardVariable variables[] = {
    {"AUX", TypeKind::textFile, RuntimeEntry::auxFile, files},
    {"AUXINPTR", TypeKind::integer, RuntimeEntry::auxInPtr, files},
    {"AUXOUTPTR", TypeKind::integer, RuntimeEntry::auxOutPtr, files},
    {"BUFLEN", TypeKind::integer, RuntimeEntry::bufLen, always},
    {"CBREAK", TypeKind::boolean, RuntimeEntry::cBreak, files},
    {"CON", TypeKind::textFile, RuntimeEntry::conFile, files},
    {"CONINPTR", TypeKind::integer, RuntimeEntry::conInPtr, files},
    {"CONOUTPTR", TypeKind::integer, RuntimeEntry::conOutPtr, files},
    {"CONSTPTR", TypeKind::integer, RuntimeEntry::conStPtr, files},
    {"ERRORPTR", TypeKind::integer, RuntimeEntry::errorPtr, always},
    {"HEAPPTR", TypeKind::integer, RuntimeEntry::heapPtr, heap},
    {"INPUT", TypeKind::textFile, RuntimeEntry::inputFile, files},
    {"KBD", TypeKind::textFile, RuntimeEntry::kbdFile, files},
    {"LST", TypeKind::textFile, RuntimeEntry::lstFile, files},
    {"LSTOUTPTR", TypeKind::integer, RuntimeEntry::lstOutPtr, files},
    {"OUTPUT", TypeKind::textFile, RuntimeEntry::outputFile, files},
    {"RECURPTR", TypeKind::integer, RuntimeEntry::recurPtr, heap},
    {"STACKPTR", TypeKind::integer, RuntimeEntry::stackPtr, heap},
    {"TRM", TypeKind::textFile, RuntimeEntry::trmFile, files},
    {"USR", TypeKind::textFile, RuntimeEntry::usrFile, files},
    {"USRINPTR", TypeKind::integer, RuntimeEntry::usrInPtr, files},
    {"USROUTPTR", TypeKind::integer, RuntimeEntry::usrOutPtr, files},
};

} // namespace

std::span<const StandardVariable> standardVariables() {
    return variables;
}

bool isFunctionShape(CallShape shape) {
    return shape >= CallShape::booleanResult && shape <= CallShape::system;
}

bool isProcedureShape(CallShape shape) {
    return shape < CallShape::booleanResult || (shape >= CallShape::system && shape < CallShape::memoryArray);
}

std::span<const StandardName> standardNames() {
    return table;
}

} // namespace tp3
