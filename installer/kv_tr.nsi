; Installs KV_Tr for the current user, without the rights of an administrator. scripts/windows_installer runs this with
; the definitions VERSION, SOURCE (the folder to install), FILES (its lists, as macros), ICON, PICTURE (of the last
; page), KILOBYTES and OUTPUT.
Unicode true
Target amd64-unicode
ManifestDPIAware true
ManifestSupportedOS Win10
RequestExecutionLevel user
SetCompressor /SOLID lzma

!include "MUI2.nsh"
!include "FileFunc.nsh"
!include "LogicLib.nsh"
!include "Sections.nsh"
!include "WinVer.nsh"
!include "${__FILEDIR__}\path.nsh"
!include "${__FILEDIR__}\file_types.nsh"
!include "${FILES}"

!define PUBLISHER "The KV_Tr developers"
!define SETTINGS "Software\KV_Tr"
!define INSTALLED "${SETTINGS}\Installed"
!define ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\KV_Tr"
!define EXIT_RUNNING 3
!define EXIT_TOO_OLD 4

Name "KV_Tr ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\KV_Tr"
InstallDirRegKey HKCU "${INSTALLED}" "Folder"
BrandingText "KV_Tr ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "KV_Tr"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "KV_Tr ${VERSION} Setup"
VIAddVersionKey "CompanyName" "${PUBLISHER}"
VIAddVersionKey "LegalCopyright" "MIT License, (c) 2026 ${PUBLISHER}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PICTURE}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_NOAUTOCLOSE
!define MUI_FINISHPAGE_RUN "$INSTDIR\kv_tr_desktop.exe"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English" ; where the user's language is none of these
!insertmacro MUI_LANGUAGE "Hungarian"
!insertmacro MUI_LANGUAGE "Romanian"
!insertmacro MUI_LANGUAGE "SerbianLatin"
!insertmacro MUI_LANGUAGE "Vietnamese"
!include "${__FILEDIR__}\words.nsh"

; Fails as long as a program of the installed ones runs, which Windows would not let anybody replace.
!macro RefuseWhileRunning un
Function ${un}RefuseWhileRunning
    again:
    StrCpy $1 ""
    !insertmacro NoteIfRunning "kv_tr_desktop.exe"
    !insertmacro NoteIfRunning "kv_tr.exe"
    !insertmacro NoteIfRunning "kv_tr_com.dll"
    !insertmacro NoteIfRunning "32\kv_tr_com.dll"
    ${If} $1 == ""
        Return
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(Running)" /SD IDCANCEL IDRETRY again
    SetErrorLevel ${EXIT_RUNNING}
    Quit
FunctionEnd
!macroend

!macro NoteIfRunning name
    ${If} ${FileExists} "$INSTDIR\${name}"
        ClearErrors
        FileOpen $0 "$INSTDIR\${name}" a
        ${If} ${Errors}
            StrCpy $1 "${name}"
        ${Else}
            FileClose $0
        ${EndIf}
    ${EndIf}
!macroend

!insertmacro RefuseWhileRunning ""
!insertmacro RefuseWhileRunning "un."

; Has the component for other programs enter itself in the registry, or remove itself with /u.
!macro Register arguments
    ${If} ${FileExists} "$INSTDIR\kv_tr_com.dll"
        ExecWait '"$SYSDIR\regsvr32.exe" /s ${arguments} "$INSTDIR\kv_tr_com.dll"' $0
        ${If} $0 <> 0
            DetailPrint "regsvr32 ${arguments} kv_tr_com.dll: $0"
        ${EndIf}
    ${EndIf}
    ${If} ${FileExists} "$INSTDIR\32\kv_tr_com.dll"
    ${AndIf} ${FileExists} "$WINDIR\SysWOW64\regsvr32.exe"
        ExecWait '"$WINDIR\SysWOW64\regsvr32.exe" /s ${arguments} "$INSTDIR\32\kv_tr_com.dll"' $0
        ${If} $0 <> 0
            DetailPrint "regsvr32 ${arguments} 32\kv_tr_com.dll: $0"
        ${EndIf}
    ${EndIf}
!macroend

!macro RememberChoice section name
    ${If} ${SectionIsSelected} ${section}
        WriteRegDWORD HKCU "${INSTALLED}" "${name}" 1
    ${Else}
        WriteRegDWORD HKCU "${INSTALLED}" "${name}" 0
    ${EndIf}
!macroend

; A part is left out when it was last time, or with an argument such as /Path=0.
!macro RecallChoice section name
    ReadRegDWORD $0 HKCU "${INSTALLED}" "${name}"
    ${GetParameters} $2
    ${GetOptions} "$2" "/${name}=" $1
    ${If} $1 != ""
        StrCpy $0 $1
    ${EndIf}
    ${If} $0 == "0"
        !insertmacro UnselectSection ${section}
    ${EndIf}
!macroend

Section "KV_Tr" SectionProgram
    SectionIn RO
    Call RefuseWhileRunning
    ${If} ${FileExists} "$INSTDIR\uninstall.exe" ; an older version, which knows what it installed
        ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR' $0
        ${If} $0 <> 0
            SetErrorLevel $0
            Abort
        ${EndIf}
    ${EndIf}
    !insertmacro InstallFiles
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKCU "${INSTALLED}" "Folder" "$INSTDIR"
    WriteRegStr HKCU "${ENTRY}" "DisplayName" "KV_Tr"
    WriteRegStr HKCU "${ENTRY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${ENTRY}" "Publisher" "${PUBLISHER}"
    WriteRegStr HKCU "${ENTRY}" "DisplayIcon" "$INSTDIR\kv_tr_desktop.exe"
    WriteRegStr HKCU "${ENTRY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${ENTRY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${ENTRY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${ENTRY}" "EstimatedSize" ${KILOBYTES}
    WriteRegDWORD HKCU "${ENTRY}" "NoModify" 1
    WriteRegDWORD HKCU "${ENTRY}" "NoRepair" 1
SectionEnd

Section "$(MenuSection)" SectionMenu
    CreateDirectory "$SMPROGRAMS\KV_Tr"
    CreateShortCut "$SMPROGRAMS\KV_Tr\KV_Tr.lnk" "$INSTDIR\kv_tr_desktop.exe"
    CreateShortCut "$SMPROGRAMS\KV_Tr\$(Documentation).lnk" "$INSTDIR\documentation\index.html"
SectionEnd

Section "$(PathSection)" SectionPath
    ${AddToPath} "$INSTDIR"
SectionEnd

SectionGroup /e "$(TypesSection)" SectionTypes
    Section "$(ProjectType) (.kvtr)" SectionProjects
        ${OfferType} ".kvtr" "KV_Tr.Project" "$(ProjectType)"
    SectionEnd
    Section "$(ParametersType) (.trp, .all)" SectionParameters
        ${OfferType} ".trp" "KV_Tr.Parameters" "$(ParametersType)"
        ${OfferType} ".all" "KV_Tr.Parameters" "$(ParametersType)"
    SectionEnd
    Section "$(PointsType) (.dat)" SectionPoints
        ${OfferType} ".dat" "KV_Tr.Points" "$(PointsType)"
    SectionEnd
SectionGroupEnd

Section "$(ComponentSection)" SectionComponent
    !insertmacro Register ""
SectionEnd

; What was chosen, for the next version.
Section "-"
    !insertmacro RememberChoice ${SectionMenu} "Menu"
    !insertmacro RememberChoice ${SectionPath} "Path"
    !insertmacro RememberChoice ${SectionProjects} "Projects"
    !insertmacro RememberChoice ${SectionParameters} "Parameters"
    !insertmacro RememberChoice ${SectionPoints} "Points"
    !insertmacro RememberChoice ${SectionComponent} "Component"
    ${TellOfTypes}
SectionEnd

Function .onInit
    ${IfNot} ${AtLeastWin10}
        MessageBox MB_OK|MB_ICONSTOP "$(TooOld)" /SD IDOK
        SetErrorLevel ${EXIT_TOO_OLD}
        Quit
    ${EndIf}
    !insertmacro RecallChoice ${SectionMenu} "Menu"
    !insertmacro RecallChoice ${SectionPath} "Path"
    !insertmacro RecallChoice ${SectionProjects} "Projects"
    !insertmacro RecallChoice ${SectionParameters} "Parameters"
    !insertmacro RecallChoice ${SectionPoints} "Points"
    !insertmacro RecallChoice ${SectionComponent} "Component"
FunctionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionProgram} "$(ProgramWords)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionMenu} "$(MenuWords)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionPath} "$(PathWords)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionTypes} "$(TypesWords)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionProjects} "$(TypesWords)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionParameters} "$(TypesWords)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionPoints} "$(TypesWords)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionComponent} "$(ComponentWords)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Section "un.KV_Tr" UnsectionProgram
    SectionIn RO
    Call un.RefuseWhileRunning
    !insertmacro Register "/u"
    ${RemoveType} ".dat" "KV_Tr.Points"
    ${RemoveType} ".all" "KV_Tr.Parameters"
    ${RemoveType} ".trp" "KV_Tr.Parameters"
    ${RemoveType} ".kvtr" "KV_Tr.Project"
    ${TellOfTypes}
    ${RemoveFromPath} "$INSTDIR"
    Delete "$SMPROGRAMS\KV_Tr\*.lnk"
    RMDir "$SMPROGRAMS\KV_Tr"
    Delete "$INSTDIR\uninstall.exe"
    !insertmacro RemoveFiles
    DeleteRegKey HKCU "${ENTRY}"
    DeleteRegKey HKCU "${INSTALLED}"
    DeleteRegKey /ifempty HKCU "${SETTINGS}"
SectionEnd

; Settings and the copies for recovery are the user's and stay, unless they are chosen or asked for with /Settings=1.
Section /o "un.$(SettingsSection)" UnsectionSettings
    DeleteRegKey HKCU "${SETTINGS}"
    RMDir /r "$LOCALAPPDATA\KV_Tr"
SectionEnd

Function un.onInit
    ${GetParameters} $2
    ${GetOptions} "$2" "/Settings=" $0
    ${If} $0 == "1"
        !insertmacro SelectSection ${UnsectionSettings}
    ${EndIf}
FunctionEnd

!insertmacro MUI_UNFUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${UnsectionProgram} "$(ProgramWords)"
    !insertmacro MUI_DESCRIPTION_TEXT ${UnsectionSettings} "$(SettingsWords)"
!insertmacro MUI_UNFUNCTION_DESCRIPTION_END
