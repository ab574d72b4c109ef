; The installer of the Windows program, for one user, without administrator rights.
;   makensis -DVERSION=1.0.0.10 -DPROGRAM=<folder with the program> -DOUTPUT=<file> \
;            -DPROJECT=<project> -DPICTURES=<folder with side.bmp> installer.nsi
;
; Command line: /S shows and asks nothing, /LANGUAGE=zh or en sets the language, and
; /D=<folder> (the last one, without quotes) sets the folder. The uninstaller takes /S, and
; /DEVICES to remove the device list as well.
;
; The installer never overwrites a file of the user: it installs the settings in language\ only if
; they are missing, and never installs phonebook.db, backup\, port.xml or window.xml.
Target amd64-unicode
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh

!define NAME "Velloran Device Management Tool"
!define SETTINGS_KEY "Software\Velloran\VlManager"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\VlManager"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"

Name "$(programName)"
OutFile "${OUTPUT}"
RequestExecutionLevel user
ManifestDPIAware true
SetCompressor /SOLID lzma
BrandingText " "
InstallDir "$LOCALAPPDATA\Programs\VlManager"
InstallDirRegKey HKCU "${SETTINGS_KEY}" "Folder"

VIProductVersion "${VERSION}"
VIAddVersionKey "ProductName" "${NAME}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "${NAME}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "CompanyName" "Velloran"
VIAddVersionKey "LegalCopyright" ""

!define MUI_ICON "${PROJECT}\resource\icons\logo.ico"
!define MUI_UNICON "${PROJECT}\resource\icons\logo.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PICTURES}\side.bmp"
!define MUI_ABORTWARNING
; An upgrade does not ask for the language again; the uninstaller uses the same one.
!define MUI_LANGDLL_REGISTRY_ROOT HKCU
!define MUI_LANGDLL_REGISTRY_KEY "${SETTINGS_KEY}"
!define MUI_LANGDLL_REGISTRY_VALUENAME "Language"

!insertmacro MUI_PAGE_WELCOME
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE checkFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TITLE "$(finishTitle)"
!define MUI_FINISHPAGE_TEXT "$(firewallNote)"
!define MUI_FINISHPAGE_TEXT_LARGE
!define MUI_FINISHPAGE_RUN "$INSTDIR\VlManager.exe"
!insertmacro MUI_PAGE_FINISH

!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "SimpChinese"
!insertmacro MUI_RESERVEFILE_LANGDLL

LangString programName ${LANG_ENGLISH} "${NAME}"
LangString programName ${LANG_SIMPCHINESE} "Velloran设备管理工具"
LangString finishTitle ${LANG_ENGLISH} "$(programName) is installed"
LangString finishTitle ${LANG_SIMPCHINESE} "$(programName)已安装"
LangString firewallNote ${LANG_ENGLISH} "When HTTPD is opened for the first time, Windows asks whether VlManager may be reached from the network. Choose $\"Allow access$\", or no phone gets its file.$\r$\n$\r$\nThis can be changed later in Windows Security, Firewall, Allow an app through firewall."
LangString firewallNote ${LANG_SIMPCHINESE} "首次开启HTTPD时，Windows会询问是否允许从网络访问VlManager。请选择“允许访问”，否则话机无法获取配置文件。$\r$\n$\r$\n以后可在“Windows安全中心 - 防火墙 - 允许应用通过防火墙”中更改。"
LangString running ${LANG_ENGLISH} "$(programName) is running. Please close it, then try again."
LangString running ${LANG_SIMPCHINESE} "$(programName)正在运行。请先关闭它，然后重试。"
LangString notWritable ${LANG_ENGLISH} "Nothing can be written to this folder. The program keeps its device list in it: please choose one of your own."
LangString notWritable ${LANG_SIMPCHINESE} "无法写入此文件夹。程序需要在其中保存设备列表，请选择您自己的文件夹。"
LangString devicesToo ${LANG_ENGLISH} "Remove the device list and its backups as well?"
LangString devicesToo ${LANG_SIMPCHINESE} "是否同时删除设备列表及其备份？"

; waitUntilClosed: ends the installer or the uninstaller with status 2 if the program in $INSTDIR is
; still running and the user does not close it.
!macro waitUntilClosed
    ${Do}
        ${IfNot} ${FileExists} "$INSTDIR\VlManager.exe"
            ${Break}
        ${EndIf}
        ; A running program cannot be opened for writing.
        ClearErrors
        FileOpen $0 "$INSTDIR\VlManager.exe" a
        ${IfNot} ${Errors}
            FileClose $0
            ${Break}
        ${EndIf}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(running)" /SD IDCANCEL IDRETRY +3
            SetErrorLevel 2
            Quit
    ${Loop}
!macroend

Function .onInit
    !insertmacro MUI_LANGDLL_DISPLAY
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/LANGUAGE=" $1
    ${IfNot} ${Errors}
        ${If} $1 == "zh"
            StrCpy $LANGUAGE ${LANG_SIMPCHINESE}
        ${Else}
            StrCpy $LANGUAGE ${LANG_ENGLISH}
        ${EndIf}
    ${EndIf}
FunctionEnd

Function checkFolder
    ClearErrors
    CreateDirectory "$INSTDIR"
    GetTempFileName $0 "$INSTDIR"
    ${If} ${Errors}
        MessageBox MB_OK|MB_ICONEXCLAMATION "$(notWritable)"
        Abort
    ${EndIf}
    Delete $0
FunctionEnd

Section
    !insertmacro waitUntilClosed
    SetOutPath "$INSTDIR"
    ${If} ${FileExists} "$INSTDIR\language\config.xml"
        StrCpy $2 upgrade
    ${Else}
        StrCpy $2 new
    ${EndIf}

    ; Removes pictures and pages that this version no longer has.
    ${If} ${FileExists} "$INSTDIR\VlManager.exe"
        RMDir /r "$INSTDIR\resource"
    ${EndIf}
    SetOverwrite on
    File "${PROGRAM}\VlManager.exe"
    File "${PROGRAM}\LICENSE.txt"
    File /r "${PROGRAM}\resource"
    SetOutPath "$INSTDIR\language"
    File "${PROGRAM}\language\*.qm"
    SetOverwrite off
    File "${PROGRAM}\language\*.xml"
    SetOverwrite on

    SetOutPath "$INSTDIR"
    ${If} $2 == new
        ; At its first start, the program copies this hint to its settings.
        FileOpen $0 "$INSTDIR\VLManager.ini" w
        ${If} $LANGUAGE == ${LANG_SIMPCHINESE}
            FileWrite $0 "language=chinese$\r$\n"
        ${Else}
            FileWrite $0 "language=english$\r$\n"
        ${EndIf}
        FileClose $0
    ${EndIf}

    ; The shortcut starts the program in its own folder.
    CreateShortCut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\VlManager.exe"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKCU "${SETTINGS_KEY}" "Folder" "$INSTDIR"
    WriteRegStr HKCU "${SETTINGS_KEY}" "Language" "$LANGUAGE"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${NAME}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\VlManager.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "Velloran"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    IntFmt $0 "0x%08X" $0
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" "$0"
SectionEnd

Function un.onInit
    !insertmacro MUI_UNGETLANGUAGE
FunctionEnd

Section Uninstall
    !insertmacro waitUntilClosed
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/DEVICES" $1
    ${If} ${Errors}
        MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "$(devicesToo)" /SD IDNO IDNO devicesStay
    ${EndIf}
    Delete "$INSTDIR\phonebook.db"
    Delete "$INSTDIR\phonebook.db-journal"
    Delete "$INSTDIR\backup\devices-????????-??????*.csv"
    Delete "$INSTDIR\backup\phonebook-*.db*"
    RMDir "$INSTDIR\backup"
    devicesStay:

    ; Files are removed one by one: a folder with files of others stays.
    Delete "$INSTDIR\VlManager.exe"
    Delete "$INSTDIR\LICENSE.txt"
    Delete "$INSTDIR\VLManager.ini"
    Delete "$INSTDIR\port.xml"
    Delete "$INSTDIR\window.xml"
    Delete "$INSTDIR\tmp.csv"
    Delete "$INSTDIR\tmp1.csv"
    Delete "$INSTDIR\tmp2.csv"
    Delete "$INSTDIR\look-tmp.csv"
    Delete "$INSTDIR\look-tmp1.csv"
    Delete "$INSTDIR\look-tmp2.csv"
    RMDir /r "$INSTDIR\resource"
    Delete "$INSTDIR\language\*.qm"
    Delete "$INSTDIR\language\config.xml"
    Delete "$INSTDIR\language\options.xml"
    RMDir "$INSTDIR\language"
    Delete "$INSTDIR\log\requests*.csv"
    RMDir "$INSTDIR\log"
    Delete "$INSTDIR\phonebook.db.lock"
    Delete "$INSTDIR\HTTPD\MACCFG\cfg*.xml*"
    RMDir "$INSTDIR\HTTPD\MACCFG"
    RMDir "$INSTDIR\HTTPD"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"

    Delete "$SMPROGRAMS\${NAME}.lnk"
    DeleteRegValue HKCU "${RUN_KEY}" "VlManager"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
    DeleteRegKey HKCU "${SETTINGS_KEY}"
    DeleteRegKey /ifempty HKCU "Software\Velloran"
SectionEnd
