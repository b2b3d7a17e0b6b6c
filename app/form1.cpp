#include "app/form1.h"

#include "app/command_line.h"
#include "app/command_table.h"
#include "editor/autocomplete_list.h"
#include "editor/oem_characters.h"
#include "project/editor_file.h"
#include "project/file_switching.h"
#include "project/project_loading.h"
#include "project/unwritable_folder.h"
#include "util/files.h"
#include "util/paths.h"
#include "util/runtime_error.h"
#include "util/window_placing.h"

#include <array>
#include <bit>
#include <commctrl.h>
#include <stdexcept>

namespace tavrel {

namespace {
constexpr const char* className = "TavrelForm1";
constexpr UINT timerPeriod = 100;  // milliseconds
constexpr double treeWidth = 2400; // twips
constexpr double firstWidth = 13800;
constexpr double firstHeight = 9900;

/// A virtual key as the editor numbers it.
int editorKeyCode(int key) {
    return key == VK_UP ? SCK_UP : key == VK_DOWN ? SCK_DOWN : key;
}

bool isFunctionKey(const MSG& message) {
    return message.message == WM_KEYDOWN && message.wParam >= VK_F1 && message.wParam <= VK_F24;
}
} // namespace

Form1::Form1(const Form1Seams& seams, const std::string& AppDir)
    : scale_(screenScale()), processes_(seams.processes), shell_(seams.shell), printer_(seams.printer) {
    makeWindows();
    workspace_ = std::unique_ptr<Workspace>(
        new Workspace{*Code1_, *this, seams.messages, seams.dialogs, seams.registry, AppDir, {}});
    form2_ = std::make_unique<Form2>(window_, [this] { return workspace_->project.Name; });
    form6_ = std::make_unique<Form6>(window_, shell_, [this] { showHistory(); });
    form7_ = std::make_unique<Form7>();
    findDialogs_ =
        std::make_unique<FindDialogs>(window_, *Code1_, seams.messages, [this](const std::string& text) {
            setPanel(StatusPanel::message, text);
        });
    TV_->attach(workspace_->tree);
    Code1_->setEvents(this);
}

Form1::~Form1() {
    workspace_->tree.setListener(nullptr);
    form2_.reset();
    form7_.reset();
    form6_.reset();
    findDialogs_.reset();
    if (IsWindow(window_) != 0) {
        KillTimer(window_, Form1_Timer1);
        SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
        DestroyWindow(window_);
    }
    DestroyAcceleratorTable(accelerators_);
    DeleteObject(pictureBrush_);
    DeleteObject(font_);
}

void Form1::makeWindows() {
    HINSTANCE const instance = GetModuleHandleA(nullptr);
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = windowProcedure;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = className;
    windowClass.hCursor = LoadCursorA(nullptr, std::bit_cast<LPCSTR>(IDC_ARROW));
    windowClass.hIcon = LoadIconA(instance, std::bit_cast<LPCSTR>(ULONG_PTR{Tavrel_Icon}));
    windowClass.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    RegisterClassA(&windowClass);
    CreateWindowExA(WS_EX_ACCEPTFILES, className, "Tavrel", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                    CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, makeMenuBar(),
                    instance, this);
    if (window_ == nullptr)
        throw std::runtime_error("The main window cannot be made.");
    // The class has the large icon only; Windows would shrink it for the title bar instead of taking the
    // small one.
    HANDLE const smallIcon =
        LoadImageA(instance, std::bit_cast<LPCSTR>(ULONG_PTR{Tavrel_Icon}), IMAGE_ICON,
                   GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED);
    SendMessageA(window_, WM_SETICON, ICON_SMALL, std::bit_cast<LPARAM>(smallIcon));
    pictureBrush_ = CreateSolidBrush(pictureBackground);
    PicBKG_ = CreateWindowExA(0, "STATIC", "", WS_CHILD, 0, 0, 16, 16, window_,
                              std::bit_cast<HMENU>(INT_PTR{Form1_PicBKG}), instance, nullptr);
    TV_ = std::make_unique<TreeView>(window_, Form1_TV);
    Code1_ = std::make_unique<CodeEditor>(window_, Form1_Code1);
    makeStatusBar();
    scale_ = windowScale(window_); // only now is it known which screen the window comes up on
    placeOnScreen();
    applyScale();
    accelerators_ = makeAccelerators();
}

/// The first size, as far as the screen has room for it: the status bar must be in sight.
void Form1::placeOnScreen() {
    RECT at = {};
    GetWindowRect(window_, &at);
    MONITORINFO screen = {};
    screen.cbSize = sizeof screen;
    GetMonitorInfoA(MonitorFromWindow(window_, MONITOR_DEFAULTTONEAREST), &screen);
    const RECT& work = screen.rcWork;
    const PixelArea place =
        fittedInto({work.left, work.top, work.right - work.left, work.bottom - work.top},
                   {at.left, at.top, scale_.toPixelsX(firstWidth), scale_.toPixelsY(firstHeight)});
    SetWindowPos(window_, nullptr, place.left, place.top, place.width, place.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void Form1::makeStatusBar() {
    StatusBar1_ =
        CreateWindowExA(0, STATUSCLASSNAMEA, "", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0, window_,
                        std::bit_cast<HMENU>(INT_PTR{Form1_StatusBar1}), GetModuleHandleA(nullptr), nullptr);
}

void Form1::applyScale() {
    HFONT const former = font_;
    font_ = messageFont(scale_);
    for (HWND const control : {TV_->window(), StatusBar1_})
        SendMessageA(control, WM_SETFONT, std::bit_cast<WPARAM>(font_), TRUE);
    DeleteObject(former);
    layStatusBar();
}

void Form1::rescaled(int pixelsPerInch, const RECT& place) {
    scale_ = {pixelsPerInch, pixelsPerInch};
    applyScale();
    // The size comes from Windows and leads to WM_SIZE, unless it happens to be the one that the window has.
    SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    resized();
}

void Form1::layStatusBar() {
    const std::array<int, 3> rightEdges = {scale_.toPixelsX(2400), scale_.toPixelsX(6600), -1};
    SendMessageA(StatusBar1_, WM_SIZE, 0, 0);
    SendMessageA(StatusBar1_, SB_SETPARTS, rightEdges.size(), std::bit_cast<LPARAM>(rightEdges.data()));
}

void Form1::removeShortcutKeysFromEditor() {
    for (const CommandRow& row : commandTable()) {
        constexpr int firstFunctionKey = VK_F1;
        if (row.shortcut.key != 0 && row.shortcut.key < firstFunctionKey) // the editor has no function keys
            Code1_->releaseKey(editorKeyCode(row.shortcut.key), (row.shortcut.control ? SCMOD_CTRL : 0) |
                                                                    (row.shortcut.shift ? SCMOD_SHIFT : 0) |
                                                                    (row.shortcut.alt ? SCMOD_ALT : 0));
    }
}

void Form1::load(const std::string& argument) {
    removeShortcutKeysFromEditor();
    AutocompleteList_ = readAutocompleteList(workspace_->AppDir);
    autocompleteIndex_.build(AutocompleteList_);
    workspace_->LastDir = workspace_->AppDir;
    layout_ = firstLayout(layout_, measures());
    place(layout_);
    SplitActive_ = false;
    workspace_->project = Project();
    for (const char* const folder : {"", "compiler\\"})
        deleteUnfinishedFiles(workspace_->AppDir + folder);
    LoadSettings(*workspace_);
    showRecentFiles();
    for (const CommandRow& row : commandTable()) {
        const bool needsHandler = row.kind == RowKind::command;
        enableCommand(row.identifier,
                      row.when != When::withProject && (!needsHandler || row.handler != nullptr));
    }
    checkCommand(mnuShowProjectTree, true);
    loaded_ = true;
    resized();
    ShowWindow(window_, SW_SHOWNORMAL);
    activated();
    UpdateWindow(window_);
    Code1_->giveFocus();
    SetTimer(window_, Form1_Timer1, timerPeriod, nullptr);
    handleCommandLine(argument);
}

void Form1::handleCommandLine(const std::string& argument) {
    const bool newProject = workspace_->settings.OpenNewProjectAtStart != storedFalse;
    switch (startAction(argument, newProject)) {
    case StartAction::openProject:
        guarded([&] {
            if (!openProjectFile(*workspace_, argument))
                return;
            AddRecentFile(*workspace_, argument);
            workspace_->LastDir = GetFilePath(argument);
        });
        break;
    case StartAction::offerNewProject:
        runCommand(mnuNew);
        break;
    case StartAction::nothing:
        break;
    }
}

void Form1::guarded(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const RuntimeError& error) {
        workspace_->messages.show(explainedMessage(*workspace_, error), "Tavrel", Icon::critical,
                                  Buttons::ok);
    } catch (const ProgramEnds&) {
        // The window is going away; there is nobody left to tell.
    } catch (const std::exception& error) {
        workspace_->messages.show(error.what(), "Tavrel", Icon::critical, Buttons::ok);
    }
}

void Form1::activated() {
    setPanel(StatusPanel::message, diskChangeNotice(*workspace_));
    const ProjectTree& tree = workspace_->tree;
    const std::size_t shown = tree.find(workspace_->project.SelectedKey);
    showCurrentView(*workspace_, tree.count() == 0 ? "no file" : shown == 0 ? "" : tree.node(shown).text);
    applyFont();
}

void Form1::applyFont() {
    Code1_->setFont(workspace_->settings.FontName, workspace_->settings.FontSize);
}

FormMeasures Form1::measures() const {
    RECT client = {};
    GetClientRect(window_, &client);
    RECT status = {};
    GetWindowRect(StatusBar1_, &status);
    return {scale_.toTwipsX(client.right), scale_.toTwipsY(client.bottom), treeWidth,
            scale_.toTwipsY(status.bottom - status.top)};
}

void Form1::place(const FormLayout& layout) {
    ShowWindow(TV_->window(), layout.treeVisible ? SW_SHOW : SW_HIDE);
    MoveWindow(TV_->window(), 0, 0, scale_.toPixelsX(treeWidth), scale_.toPixelsY(layout.treeHeight), TRUE);
    MoveWindow(Code1_->window(), scale_.toPixelsX(layout.editorLeft), 0, scale_.toPixelsX(layout.editorWidth),
               scale_.toPixelsY(layout.editorHeight), TRUE);
}

void Form1::resized() {
    layStatusBar();
    layout_ = resizedLayout(layout_, measures(), commandChecked(mnuShowProjectTree));
    place(layout_);
    if (SplitActive_)
        Code1_->setSplitterPosition(centredSplitter(layout_.editorHeight, scale_.twipsPerPixelY()));
}

void Form1::timerTick() {
    const EditorPosition start = Code1_->selection().start;
    setPanel(StatusPanel::cursorPosition,
             "Line: " + std::to_string(start.line + 1) + " Col: " + std::to_string(start.column + 1));
    followEditor();
    copyTypedTextWhenDue();
}

/// Never in the way: not while keys wait, and a copy that fails is tried again with the next change.
void Form1::copyTypedTextWhenDue() {
    const unsigned long long changes = Code1_->changeCount();
    if (!Code1_->modified()) {
        typingWatch_.settled(changes);
        return;
    }
    const unsigned long long now = GetTickCount64();
    if (!typingWatch_.isDue(changes, now) || HIWORD(GetQueueStatus(QS_KEY)) != 0)
        return;
    typingWatch_.copied(changes, now);
    copyTypedText(*workspace_);
}

void Form1::followEditor() {
    enableCommand(mnuCopy, Code1_->canCopy());
    enableCommand(mnuCut, Code1_->canCut());
    enableCommand(mnuPaste, Code1_->canPaste());
    enableCommand(mnuRedo, Code1_->canRedo());
    enableCommand(mnuUndo, Code1_->canUndo());
}

void Form1::setPanel(StatusPanel panel, const std::string& text) {
    const auto part = static_cast<WPARAM>(static_cast<int>(panel) - 1);
    const LRESULT length = SendMessageA(StatusBar1_, SB_GETTEXTLENGTHA, part, 0);
    std::string shown(static_cast<std::size_t>(LOWORD(length)) + 1, '\0');
    SendMessageA(StatusBar1_, SB_GETTEXTA, part, std::bit_cast<LPARAM>(shown.data()));
    shown.pop_back();
    if (shown != text) // the timer would make it flicker
        SendMessageA(StatusBar1_, SB_SETTEXTA, part, std::bit_cast<LPARAM>(text.c_str()));
}

/// A signature comes from a source text, whose frames and accents are OEM characters.
void Form1::showSignature(const std::string& signature) {
    constexpr auto part = static_cast<WPARAM>(static_cast<int>(StatusPanel::message) - 1);
    SendMessageW(StatusBar1_, SB_SETTEXTW, part, std::bit_cast<LPARAM>(unicodeOfOem(signature).c_str()));
}

void Form1::setWaitPointer(bool wait) {
    waitPointer_ = wait;
    Code1_->setWaitPointer(wait);
    SetCursor(LoadCursorA(nullptr, std::bit_cast<LPCSTR>(wait ? IDC_WAIT : IDC_ARROW)));
}

void Form1::applyFileAssociation() {
    RegisterFileType(workspace_->registry, workspace_->settings, workspace_->AppDir);
}

void Form1::refreshTooltips() {
    guarded([this] { RefreshTooltips(*workspace_); });
}

/// The keys that build, run and help go on working while the progress window has the focus.
bool Form1::isInProgressWindow(HWND window) const {
    HWND const progress = form2_ ? form2_->window() : nullptr;
    return progress != nullptr && (window == progress || IsChild(progress, window) != 0);
}

bool Form1::handleFirst(MSG& message) {
    if (message.message == WM_KEYDOWN && message.wParam == VK_CANCEL) { // Ctrl+Break, wherever the focus is
        processes_.breakOff();
        return true;
    }
    const bool ours = message.hwnd == window_ || IsChild(window_, message.hwnd) != 0 ||
                      (isInProgressWindow(message.hwnd) && isFunctionKey(message));
    return ours && TranslateAcceleratorA(window_, accelerators_, &message) != 0;
}

LRESULT Form1::handle(UINT message, WPARAM first, LPARAM second) {
    constexpr UINT nodeClicked = WM_APP + 1;
    switch (message) {
    case WM_COMMAND:
        if (second == 0)
            runCommand(LOWORD(first));
        return 0;
    case WM_NOTIFY:
        if (TV_ && TV_->handleNotification(*std::bit_cast<NMHDR*>(second)))
            PostMessageA(window_, nodeClicked, TV_->clickedNode(),
                         0); // not from inside the control's mouse handling
        return 0;
    case nodeClicked:
        nodeChosen(first);
        return 0;
    case WM_MENUCHAR:
        return menuCharacter(LOWORD(first), std::bit_cast<HMENU>(second));
    case WM_CONTEXTMENU:
        // The mouse's has been there by then: the editor reports the button itself.
        if (second == -1 && IsChild(Code1_->window(), std::bit_cast<HWND>(first)) != 0)
            popUpEditMenuAtCaret();
        return 0;
    case WM_ACTIVATE:
        if (loaded_ && LOWORD(first) != WA_INACTIVE) {
            guarded([this] { activated(); });
            Code1_->giveFocus();
        }
        return 0;
    case WM_SIZE:
        if (loaded_ && first != SIZE_MINIMIZED)
            guarded([this] { resized(); });
        return 0;
    case WM_DPICHANGED:
        if (loaded_)
            rescaled(LOWORD(first), *std::bit_cast<const RECT*>(second));
        return 0;
    case WM_DROPFILES:
        guarded([&] { filesDropped(std::bit_cast<HDROP>(first)); });
        return 0;
    case WM_TIMER:
        guarded([this] { timerTick(); });
        return 0;
    case WM_KEYUP:
        return 0; // no key-up that reaches the form means anything
    case WM_SETCURSOR:
        if (waitPointer_) {
            SetCursor(LoadCursorA(nullptr, std::bit_cast<LPCSTR>(IDC_WAIT)));
            return TRUE;
        }
        return DefWindowProcA(window_, message, first, second);
    case WM_CTLCOLORSTATIC:
        return std::bit_cast<LRESULT>(pictureBrush_);
    case WM_ENDSESSION:
        // Windows ends: the process may be stopped as soon as this returns.
        if (first != 0)
            guarded([this] { rescueEditorText(*workspace_); });
        return 0;
    case WM_DESTROY:
        // The program ends without a question, as it always has; what was not saved is kept beside.
        if (loaded_)
            guarded([this] { rescueEditorText(*workspace_); });
        KillTimer(window_, Form1_Timer1);
        PostQuitMessage(0);
        return 0;
    default: {
        bool handled = false;
        if (findDialogs_)
            guarded([&] { handled = findDialogs_->handle(message, second); });
        return handled ? 0 : DefWindowProcA(window_, message, first, second);
    }
    }
}

LRESULT CALLBACK Form1::windowProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_NCCREATE) {
        auto* const creation = std::bit_cast<CREATESTRUCTA*>(second);
        static_cast<Form1*>(creation->lpCreateParams)->window_ = window;
        SetWindowLongPtrA(window, GWLP_USERDATA, std::bit_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* const form = std::bit_cast<Form1*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    return form != nullptr ? form->handle(message, first, second)
                           : DefWindowProcA(window, message, first, second);
}

} // namespace tavrel
