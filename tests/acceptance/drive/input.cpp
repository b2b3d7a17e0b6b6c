#include "tests/acceptance/drive/input.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace tavrel::drive {

namespace {

INPUT keyInput(WORD key, bool up) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
    return input;
}

/// All down in this order, all up in the other. Where a menu or a dialog is up, it takes the keys.
void pressTogether(HWND form, const std::vector<WORD>& keys) {
    if (FindWindowA("#32768", nullptr) == nullptr && IsWindowEnabled(form) != FALSE)
        SetForegroundWindow(form);
    std::vector<INPUT> inputs;
    for (const WORD key : keys)
        inputs.push_back(keyInput(key, false));
    for (std::size_t i = keys.size(); i-- > 0;)
        inputs.push_back(keyInput(keys[i], true));
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    Sleep(50); // a user is no faster, and the key's work is done when the next question comes
}

void pressSign(HWND form, char sign) {
    SetForegroundWindow(form);
    std::vector<INPUT> inputs(2, keyInput(0, false));
    for (INPUT& input : inputs) {
        input.ki.wScan = static_cast<WORD>(static_cast<unsigned char>(sign));
        input.ki.dwFlags |= KEYEVENTF_UNICODE;
    }
    inputs[1].ki.dwFlags |= KEYEVENTF_KEYUP;
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    Sleep(50);
}

WORD keyNamed(const std::string& name) {
    static const std::vector<std::pair<const char*, WORD>> names = {
        {"Ctrl", VK_CONTROL},  {"Alt", VK_MENU},      {"Shift", VK_SHIFT},   {"Tab", VK_TAB},
        {"Enter", VK_RETURN},  {"Esc", VK_ESCAPE},    {"Down", VK_DOWN},     {"Right", VK_RIGHT},
        {"Home", VK_HOME},     {"End", VK_END},       {"Up", VK_UP},         {"Left", VK_LEFT},
        {"PageUp", VK_PRIOR},  {"PageDown", VK_NEXT}, {"Delete", VK_DELETE}, {"Back", VK_BACK},
        {"Backspace", VK_BACK}};
    for (const auto& [known, key] : names) {
        if (name == known)
            return key;
    }
    if (name.size() == 1 && name[0] >= 'A' && name[0] <= 'Z')
        return static_cast<WORD>(name[0]);
    if (name.size() >= 2 && name[0] == 'F')
        return static_cast<WORD>(VK_F1 + std::stoi(name.substr(1)) - 1);
    throw std::invalid_argument("no key is called " + name);
}

} // namespace

int typeKeys(HWND form, const std::string& text) {
    for (const char c : text) {
        const SHORT key = VkKeyScanA(c);
        if (key ==
            -1) { // a sign that this process's keyboard does not know, as an on-screen keyboard types it
            pressSign(form, c);
            continue;
        }
        std::vector<WORD> keys;
        if ((HIBYTE(key) & 1) != 0)
            keys.push_back(VK_SHIFT);
        keys.push_back(LOBYTE(key));
        pressTogether(form, keys);
    }
    return 0;
}

int pressChord(HWND form, const std::string& keys) {
    std::vector<WORD> together;
    std::size_t start = 0;
    while (start <= keys.size()) {
        const std::size_t end = std::min(keys.find('+', start), keys.size());
        together.push_back(keyNamed(keys.substr(start, end - start)));
        start = end + 1;
    }
    pressTogether(form, together);
    return 0;
}

void clickRight(HWND window, POINT place) {
    ClientToScreen(window, &place);
    SetCursorPos(place.x, place.y);
    std::vector<INPUT> inputs(2);
    for (INPUT& input : inputs)
        input.type = INPUT_MOUSE;
    inputs[0].mi.dwFlags = MOUSEEVENTF_RIGHTDOWN;
    inputs[1].mi.dwFlags = MOUSEEVENTF_RIGHTUP;
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

HWND focusOf(HWND form) {
    GUITHREADINFO information = {};
    information.cbSize = sizeof information;
    GetGUIThreadInfo(GetWindowThreadProcessId(form, nullptr), &information);
    return information.hwndFocus;
}

} // namespace tavrel::drive
