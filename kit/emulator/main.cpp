// msx.exe: starts the MSX emulator with the program that Tavrel has built. There is one such process at a
// time in each program folder; it stays for as long as its emulator. A further one hands its request over to
// it and ends.
#include "emulator/session.h"
#include "emulator/wide_text.h"

#include <bit>
#include <deque>
#include <shellapi.h>
#include <windows.h>

namespace {

using namespace emulator;

constexpr UINT emulatorSpoke = WM_APP;
constexpr wchar_t windowClass[] = L"TavrelEmulatorStarter";
constexpr DWORD handOverLimit = 30'000; // milliseconds

void showFailure(const std::string& text) {
    MessageBoxW(nullptr, wide(text).c_str(), L"Tavrel", MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
}

std::wstring pathOfThisProgram() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

bool exists(const std::string& path) {
    return GetFileAttributesW(wide(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

/// The whole path, since the process that gets the request has another current folder.
std::string absolute(const std::string& path) {
    if (path.empty())
        return path;
    std::wstring whole(32768, L'\0');
    const DWORD length =
        GetFullPathNameW(wide(path).c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr);
    whole.resize(length < whole.size() ? length : 0);
    return whole.empty() ? path : narrow(whole);
}

/// A name for this folder's objects, whatever case and letters its path has.
std::wstring nameOf(std::wstring folder) {
    CharLowerBuffW(folder.data(), static_cast<DWORD>(folder.size()));
    std::uint64_t hash = 14695981039346656037ULL; // FNV-1a
    for (const wchar_t character : folder)
        hash = (hash ^ static_cast<std::uint64_t>(character)) * 1099511628211ULL;
    return L"TavrelEmulator-" + std::to_wstring(hash);
}

/// The process that owns the emulator: a window without a face takes the requests of others.
class Owner {
  public:
    Owner(const std::string& folder, const std::wstring& name)
        : window_(makeWindow(name, this)), session_(folder, window_, emulatorSpoke) {}
    ~Owner() { DestroyWindow(window_); }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;

    /// Serves this request and further ones until the emulator ends. Returns the exit code.
    int serve(const Request& first) {
        requests_.push_back(first);
        do {
            guarded([this] { next(); });
            pump();
        } while (!requests_.empty() || session_.process() != nullptr);
        return failed_ ? 1 : 0;
    }

  private:
    template <typename Work> void guarded(const Work& work) {
        std::string failure;
        try {
            work();
            return;
        } catch (const std::exception& error) {
            failure = error.what();
        }
        failed_ = true;
        showFailure(failure);
    }

    /// The next thing to do; waits for one when the emulator runs and nobody wants anything.
    void next() {
        if (!requests_.empty()) {
            const Request request = requests_.front();
            requests_.pop_front();
            failed_ = false;
            session_.run(request);
            return;
        }
        HANDLE process = session_.process();
        if (process == nullptr)
            return;
        if (MsgWaitForMultipleObjects(1, &process, FALSE, INFINITE, QS_ALLINPUT) == WAIT_OBJECT_0)
            session_.finished();
    }

    static void pump() {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0)
            DispatchMessageW(&message);
    }

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
        auto* const owner = std::bit_cast<Owner*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (owner != nullptr && message == WM_COPYDATA) {
            const auto& data = *std::bit_cast<const COPYDATASTRUCT*>(second);
            owner->requests_.push_back(decodeRequest({static_cast<const char*>(data.lpData), data.cbData}));
            return TRUE;
        }
        if (owner != nullptr && message == emulatorSpoke) {
            owner->guarded([owner] { owner->session_.spoken(); });
            return 0;
        }
        return DefWindowProcW(window, message, first, second);
    }

    static HWND makeWindow(const std::wstring& name, Owner* owner) {
        WNDCLASSW description = {};
        description.lpfnWndProc = procedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = windowClass;
        RegisterClassW(&description);
        HWND const window = CreateWindowExW(0, windowClass, name.c_str(), 0, 0, 0, 0, 0, HWND_MESSAGE,
                                            nullptr, description.hInstance, nullptr);
        if (window == nullptr)
            failWithLastError("The emulator cannot be started");
        SetWindowLongPtrW(window, GWLP_USERDATA, std::bit_cast<LONG_PTR>(owner));
        return window;
    }

    HWND window_;
    Session session_;
    std::deque<Request> requests_;
    bool failed_ = false;
};

/// Gives the request to the process that owns the emulator. False when there is none (any more).
bool handOver(const Request& request, const std::wstring& name) {
    HWND const window = FindWindowExW(HWND_MESSAGE, nullptr, windowClass, name.c_str());
    if (window == nullptr)
        return false;
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    AllowSetForegroundWindow(process); // the user's key was meant for this process, which may pass that on
    std::string text = encodeRequest(request);
    COPYDATASTRUCT data = {0, static_cast<DWORD>(text.size()), text.data()};
    DWORD_PTR taken = 0;
    return SendMessageTimeoutW(window, WM_COPYDATA, 0, std::bit_cast<LPARAM>(&data), SMTO_NORMAL,
                               handOverLimit, &taken) != 0 &&
           taken == TRUE;
}

/// Serves the request, or finds who does. Between the two a process may be about to begin or to end.
int serveOrHandOver(const Request& request, const std::wstring& folder) {
    const std::wstring name = nameOf(folder);
    const Handle owning(CreateMutexW(nullptr, FALSE, (L"Local\\" + name).c_str()));
    const ULONGLONG end = GetTickCount64() + handOverLimit;
    do {
        const DWORD wait = WaitForSingleObject(owning.get(), 50);
        if (wait == WAIT_OBJECT_0 || wait == WAIT_ABANDONED) {
            const int code = Owner(narrow(folder), name).serve(request);
            ReleaseMutex(owning.get());
            return code;
        }
        if (handOver(request, name))
            return 0;
    } while (GetTickCount64() < end);
    throw Failure("The emulator that runs does not take the program. Close it and try again.");
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    try {
        const std::wstring path = pathOfThisProgram();
        const std::size_t slash = path.find_last_of(L'\\');
        Request request =
            parseRequest(argumentsOf(narrow(GetCommandLineW()), narrow(path.substr(slash + 1))), exists);
        request.image = absolute(request.image);
        return serveOrHandOver(request, path.substr(0, slash));
    } catch (const std::exception& error) {
        showFailure(error.what());
        return 1;
    }
}
