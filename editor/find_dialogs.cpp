#include "editor/find_dialogs.h"

#include "editor/oem_characters.h"
#include "util/late_function.h"

#include <bit>
#include <utility>

namespace tavrel {

namespace {
UINT dialogMessage() {
    static const UINT message = RegisterWindowMessageA(FINDMSGSTRINGA);
    return message;
}
} // namespace

FindDialogs::FindDialogs(HWND owner, CodeEditor& editor, MessageBoxes& messages,
                         std::function<void(const std::string&)> notify)
    : owner_(owner), editor_(editor), messages_(messages), notify_(std::move(notify)) {
    record_.lStructSize = sizeof record_;
    record_.hwndOwner = owner_;
    record_.Flags = FR_DOWN;
    record_.lpstrFindWhat = what_.data();
    record_.wFindWhatLen = static_cast<WORD>(what_.size());
    record_.lpstrReplaceWith = with_.data();
    record_.wReplaceWithLen = static_cast<WORD>(with_.size());
}

FindDialogs::~FindDialogs() {
    if (dialog_ != nullptr)
        DestroyWindow(dialog_);
}

void FindDialogs::prepare() {
    if (dialog_ != nullptr)
        DestroyWindow(dialog_);
    dialog_ = nullptr;
    constexpr DWORD kept = FR_DOWN | FR_MATCHCASE | FR_WHOLEWORD;
    record_.Flags &= kept;
    const std::wstring selected = unicodeOfOem(editor_.selectedText());
    if (selected.empty() || selected.size() >= what_.size() ||
        selected.find_first_of(std::wstring_view(L"\r\n\0", 3)) != std::wstring::npos)
        return;
    what_.fill(L'\0');
    selected.copy(what_.data(), what_.size() - 1);
}

void FindDialogs::showFind() {
    if (dialog_ != nullptr && !replacing_) {
        SetFocus(dialog_);
        return;
    }
    prepare();
    replacing_ = false;
    dialog_ = lateFunction<decltype(FindTextW)>("comdlg32.dll", "FindTextW")(&record_);
}

void FindDialogs::showReplace() {
    if (dialog_ != nullptr && replacing_) {
        SetFocus(dialog_);
        return;
    }
    prepare();
    replacing_ = true;
    record_.Flags |= FR_DOWN; // this dialog has no choice of direction
    dialog_ = lateFunction<decltype(ReplaceTextW)>("comdlg32.dll", "ReplaceTextW")(&record_);
}

void FindDialogs::findNext() {
    if (what_[0] == L'\0')
        showFind();
    else
        search();
}

FindRequest FindDialogs::request() const {
    return {oemOfUnicode(what_.data()), (record_.Flags & FR_MATCHCASE) != 0,
            (record_.Flags & FR_WHOLEWORD) != 0, (record_.Flags & FR_DOWN) != 0};
}

std::string FindDialogs::replacement() const {
    return oemOfUnicode(with_.data());
}

void FindDialogs::search() {
    const FindRequest wanted = request();
    switch (editor_.find(wanted)) {
    case Found::yes:
        notify_("");
        break;
    case Found::behindTheEnd:
        notify_(wanted.forward ? "Searched on from the start" : "Searched on from the end");
        break;
    case Found::no:
        messages_.show("\"" + ansiOfOem(wanted.text) + "\" was not found.", "Tavrel", Icon::information,
                       Buttons::ok);
        break;
    }
}

void FindDialogs::replace() {
    editor_.replaceMatch(request(), replacement());
    search();
}

void FindDialogs::replaceAll() {
    const long count = editor_.replaceAll(request(), replacement());
    notify_(std::to_string(count) + (count == 1 ? " place replaced" : " places replaced"));
}

void FindDialogs::obey(DWORD flags) {
    if ((flags & FR_DIALOGTERM) != 0)
        dialog_ = nullptr;
    else if ((flags & FR_REPLACEALL) != 0)
        replaceAll();
    else if ((flags & FR_REPLACE) != 0)
        replace();
    else if ((flags & FR_FINDNEXT) != 0)
        search();
}

bool FindDialogs::handle(UINT message, LPARAM second) {
    if (message != dialogMessage() || std::bit_cast<FINDREPLACEW*>(second) != &record_)
        return false;
    obey(record_.Flags);
    return true;
}

bool FindDialogs::handleFirst(MSG& message) {
    return dialog_ != nullptr && IsDialogMessageA(dialog_, &message) != 0;
}

} // namespace tavrel
