#pragma once
// The commands the main window forwards, one per command button; the shell
// decides what each does.

namespace rm8::ui {

enum class WindowCommand {
    ActivateOrDeactivate, // btDEA
    ReadStation, // btEEPROMLoad
    WriteStation, // btEEPROMSave
    LoadFile, // btFileLoad
    SaveFile, // btFileSave
    Print, // btTisk
    About, // btInformace
    Exit, // btKonec
    PortSettings, // btPortSettings
    CompareWithFile, // btPorovnatSoubor
    CompareWithStation, // btPorovnatStanici
    Undo, // btZpet, Ctrl+Z
    Redo, // btZnovu, Ctrl+Y, Ctrl+Shift+Z
    PrintPreview, // btNahled
};

} // namespace rm8::ui
