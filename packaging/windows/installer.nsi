; The installer: for all users, with an entry in the start menu and one in the list of installed programs. Its upgrade
; replaces the program's folder; settings and libraries are elsewhere and stay, at uninstalling too.
; packaging/windows/build gives FOLDER, OUT, VERSION and ICON.

Target amd64-unicode
!include "MUI2.nsh"
!include "x64.nsh"

!define NAME "System Administration"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\sysadmin"

Name "${NAME}"
OutFile "${OUT}"
InstallDir "$PROGRAMFILES64\System Administration"
InstallDirRegKey HKLM "Software\sysadmin" "Folder"
RequestExecutionLevel admin
SetCompressor /SOLID lzma
ManifestDPIAware true

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${NAME}"
VIAddVersionKey "FileDescription" "${NAME}: setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "CompanyName" "The sysadmin authors"
VIAddVersionKey "LegalCopyright" "2026 the sysadmin authors"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\sysadmin.exe"
!insertmacro MUI_PAGE_LICENSE "${FOLDER}/LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Function .onInit
    ${IfNot} ${RunningX64}
        MessageBox MB_ICONSTOP "${NAME} needs a 64-bit Windows."
        Abort
    ${EndIf}
    SetRegView 64
FunctionEnd

Function un.onInit
    SetRegView 64
FunctionEnd

!macro RemoveProgram
    Delete "$INSTDIR\*.exe"
    Delete "$INSTDIR\*.dll"
    Delete "$INSTDIR\SysAdmin.chm"
    Delete "$INSTDIR\LICENSE.txt"
    RMDir /r "$INSTDIR\platforms"
    RMDir /r "$INSTDIR\styles"
    RMDir /r "$INSTDIR\tls"
    RMDir /r "$INSTDIR\imageformats"
!macroend

Section
    SetShellVarContext all
    !insertmacro RemoveProgram
    SetOutPath "$INSTDIR"
    File /r "${FOLDER}/*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateShortCut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\sysadmin.exe"
    WriteRegStr HKLM "Software\sysadmin" "Folder" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayName" "${NAME}"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayIcon" "$INSTDIR\sysadmin.exe"
    WriteRegStr HKLM "${UNINSTALL}" "Publisher" "The sysadmin authors"
    WriteRegStr HKLM "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegDWORD HKLM "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL}" "NoRepair" 1
SectionEnd

Section "Uninstall"
    SetShellVarContext all
    !insertmacro RemoveProgram
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\${NAME}.lnk"
    DeleteRegKey HKLM "${UNINSTALL}"
    DeleteRegKey HKLM "Software\sysadmin"
SectionEnd
