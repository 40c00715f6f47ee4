; The Windows installer of rm8config and rm8ctl, built by
; scripts/windows-package.sh with Debian's makensis:
;   makensis -INPUTCHARSET UTF8 -DVERSION=x.y.z -DSTAGE=folder -DFILES=list.nsh -DOUTFILE=setup.exe rm8config.nsi
; STAGE is the finished program folder; FILES defines the macros
; InstallFiles and UninstallFiles, one File or Delete line per staged file,
; so the uninstaller removes exactly what was installed and never a folder
; the technician picked with /D as a whole.

Unicode true
; A 64-bit installer: the program is 64-bit only, so is every Windows that
; can run it, and a 64-bit installer writes to the registry and Program Files
; that 64-bit Windows reads, without WOW64's redirection.
Target amd64-unicode
ManifestDPIAware true
RequestExecutionLevel admin
SetCompressor /SOLID lzma

!macro RequireDefine name
  !ifndef ${name}
    !error "${name} is not defined: scripts/windows-package.sh passes it"
  !endif
!macroend
!insertmacro RequireDefine VERSION
!insertmacro RequireDefine STAGE
!insertmacro RequireDefine FILES
!insertmacro RequireDefine OUTFILE

!define PRODUCT "rm8config"
!define PUBLISHER "RM8 config team"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}"
!define PROGID "rm8config.eep"
; Where the .eep extension's previous owner is kept while rm8config holds it:
; AVR tools use the same extension for EEPROM images.
!define PREVIOUS_OWNER "rm8config.previous"

!include "MUI2.nsh"
!include "LogicLib.nsh"
!include "FileFunc.nsh"
!include "${FILES}"

Name "${PRODUCT} ${VERSION}"
OutFile "${OUTFILE}"
InstallDir "$PROGRAMFILES64\${PRODUCT}"
; A second install goes where the first one went.
InstallDirRegKey HKLM "${UNINSTALL_KEY}" "InstallLocation"
BrandingText "${PRODUCT} ${VERSION}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=0 "ProductName" "${PRODUCT}"
VIAddVersionKey /LANG=0 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "CompanyName" "${PUBLISHER}"
VIAddVersionKey /LANG=0 "FileDescription" "Instalace programu ${PRODUCT} ${VERSION}"
VIAddVersionKey /LANG=0 "LegalCopyright" "${PUBLISHER}"

!define MUI_ABORTWARNING
; No "run rm8config" on the last page: started from here it would run with
; the installer's administrator rights, and Windows refuses files dragged
; from the Explorer onto an elevated window.
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\CTIMNE.txt"
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "Czech"

LangString FileTypeName ${LANG_CZECH} "Soubor nastavení stanice RM8"
LangString UninstallLink ${LANG_CZECH} "Odinstalovat ${PRODUCT}"
LangString ProgramDescription ${LANG_CZECH} "Nastavení GSM stanic RM8, RMA8, RMADC2 a RMADC3"
LangString NotRemoved ${LANG_CZECH} "Některé soubory nešlo odstranit (běží ještě rm8config nebo rm8ctl?). Zůstaly ve složce $INSTDIR."

Section "rm8config"
  ; A version installed before goes first, so none of its files that this
  ; one no longer has stays behind. In place (_?=), so it is done when
  ; ExecWait returns; it leaves only itself, which is overwritten below.
  ${If} ${FileExists} "$INSTDIR\uninstall.exe"
    ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
  ${EndIf}
  SetOutPath "$INSTDIR"
  !insertmacro InstallFiles
  WriteUninstaller "$INSTDIR\uninstall.exe"

  ; Start-menu entries for every user of the machine, as the program is.
  SetShellVarContext all
  CreateDirectory "$SMPROGRAMS\${PRODUCT}"
  CreateShortCut "$SMPROGRAMS\${PRODUCT}\${PRODUCT}.lnk" "$INSTDIR\rm8config.exe" "" \
    "$INSTDIR\rm8config.exe" 0 SW_SHOWNORMAL "" "$(ProgramDescription)"
  CreateShortCut "$SMPROGRAMS\${PRODUCT}\$(UninstallLink).lnk" "$INSTDIR\uninstall.exe"

  ; *.eep opens in rm8config. An owner the extension had before is kept,
  ; so the uninstaller can hand the extension back.
  ReadRegStr $0 HKLM "Software\Classes\.eep" ""
  ${If} $0 != ""
  ${AndIf} $0 != "${PROGID}"
    WriteRegStr HKLM "Software\Classes\.eep" "${PREVIOUS_OWNER}" "$0"
  ${EndIf}
  WriteRegStr HKLM "Software\Classes\.eep" "" "${PROGID}"
  WriteRegStr HKLM "Software\Classes\.eep\OpenWithProgids" "${PROGID}" ""
  WriteRegStr HKLM "Software\Classes\${PROGID}" "" "$(FileTypeName)"
  WriteRegStr HKLM "Software\Classes\${PROGID}\DefaultIcon" "" '"$INSTDIR\rm8config.exe",0'
  WriteRegStr HKLM "Software\Classes\${PROGID}\shell\open\command" "" '"$INSTDIR\rm8config.exe" "%1"'
  ; Explorer reads associations once; this makes it read them again.
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'

  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "${PRODUCT}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "${PUBLISHER}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" '"$INSTDIR\rm8config.exe",0'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "EstimatedSize" "$0"
SectionEnd

Section "Uninstall"
  SetShellVarContext all
  Delete "$SMPROGRAMS\${PRODUCT}\${PRODUCT}.lnk"
  Delete "$SMPROGRAMS\${PRODUCT}\$(UninstallLink).lnk"
  RMDir "$SMPROGRAMS\${PRODUCT}"

  ; The extension is handed back only if rm8config still holds it; a program
  ; installed since that took it over keeps it.
  ReadRegStr $0 HKLM "Software\Classes\.eep" ""
  ReadRegStr $1 HKLM "Software\Classes\.eep" "${PREVIOUS_OWNER}"
  ${If} $0 == "${PROGID}"
    ${If} $1 != ""
      WriteRegStr HKLM "Software\Classes\.eep" "" "$1"
    ${Else}
      DeleteRegValue HKLM "Software\Classes\.eep" ""
    ${EndIf}
  ${EndIf}
  DeleteRegValue HKLM "Software\Classes\.eep" "${PREVIOUS_OWNER}"
  DeleteRegValue HKLM "Software\Classes\.eep\OpenWithProgids" "${PROGID}"
  DeleteRegKey /ifempty HKLM "Software\Classes\.eep\OpenWithProgids"
  DeleteRegKey /ifempty HKLM "Software\Classes\.eep"
  DeleteRegKey HKLM "Software\Classes\${PROGID}"
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'

  ClearErrors
  !insertmacro UninstallFiles
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONEXCLAMATION "$(NotRemoved)" /SD IDOK
  ${EndIf}
  ; Run with _?= the uninstaller is this very file and stays; whoever
  ; started it that way deletes it.
  Delete "$INSTDIR\uninstall.exe"
  ; Only if empty: files of the technician's own in the folder stay.
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
SectionEnd
