#include "build/form3.h"

#include "app/resource.h"
#include "build/project_properties.h"
#include "util/text.h"
#include "util/window_placing.h"

#include <array>
#include <bit>
#include <string>

namespace tavrel {

namespace {

std::string fieldText(HWND dialog, int field) {
    std::array<char, 1024> text{};
    GetDlgItemTextA(dialog, field, text.data(), static_cast<int>(text.size()));
    return text.data();
}

void opened(HWND dialog, const Project& project) {
    CenterForm(GetParent(dialog), dialog);
    SetDlgItemTextA(dialog, Form3_Text1, project.Name.c_str());
    SetDlgItemTextA(dialog, Form3_Text3, hexOf16(project.StartAddress).c_str());
    SetDlgItemTextA(dialog, Form3_Text4, hexOf16(project.EndAddress).c_str());
}

void fieldLeft(HWND dialog, int field) {
    const std::string text = fieldText(dialog, field);
    if (field == Form3_Text1 && text.empty())
        SetDlgItemTextA(dialog, field, unnamedProject.c_str());
    else if ((field == Form3_Text3 || field == Form3_Text4) && text.size() < 4)
        SetDlgItemTextA(dialog, field, filledAddressField(text).c_str());
}

void accept(HWND dialog, Workspace& workspace) {
    const std::string name = fieldText(dialog, Form3_Text1);
    if (!name.empty()) {
        if (workspace.tree.count() > 0)
            workspace.tree.setText(1, name);
        workspace.project.Name = name;
    }
    workspace.project.StartAddress = acceptedStartAddress(fieldText(dialog, Form3_Text3));
    workspace.project.EndAddress = acceptedEndAddress(fieldText(dialog, Form3_Text4));
}

INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(dialog, GWLP_USERDATA, second);
        opened(dialog, std::bit_cast<Workspace*>(second)->project);
        return TRUE;
    }
    if (message != WM_COMMAND)
        return FALSE;
    if (HIWORD(first) == EN_KILLFOCUS)
        fieldLeft(dialog, LOWORD(first));
    else if (LOWORD(first) == Form3_Command1 || LOWORD(first) == IDOK) {
        fieldLeft(dialog, GetDlgCtrlID(GetFocus())); // Enter leaves no field, but its rules are the same
        accept(dialog, *std::bit_cast<Workspace*>(GetWindowLongPtrA(dialog, GWLP_USERDATA)));
        EndDialog(dialog, IDOK);
    } else if (LOWORD(first) == Form3_Command2 || LOWORD(first) == IDCANCEL) {
        EndDialog(dialog, IDCANCEL);
    }
    return TRUE;
}

} // namespace

void showProjectProperties(HWND owner, Workspace& workspace) {
    DialogBoxParamA(GetModuleHandleA(nullptr), std::bit_cast<LPCSTR>(ULONG_PTR{Form3_Dialog}), owner,
                    dialogProcedure, std::bit_cast<LPARAM>(&workspace));
}

} // namespace tavrel
