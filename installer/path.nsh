; The user's PATH, which may be longer than a string of the installer: it is read, changed and written in memory of its
; own, so that nothing is cut off, and keeps its kind (with variables or without).

!define KEY_READ_WRITE 0x2001F ; KEY_READ | KEY_WRITE
!define USERS_KEY -2147483647    ; HKEY_CURRENT_USER
!define LONGEST_PATH 32000     ; bytes; Windows allows 32767 letters for all variables of the environment

!define AddToPath "!insertmacro CallPath AddToPath"
!define RemoveFromPath "!insertmacro CallPath un.RemoveFromPath"
!macro CallPath function entry
    Push "${entry}"
    Call ${function}
!macroend

; Reads the value into $R1, with a semicolon before and after and room for the entry $R0: $R2 is its kind, $R3 the key,
; and $R4 its size in bytes, 0 when there is none. $R1 is 0 when it cannot be read.
!macro ReadPath
    StrCpy $R1 0
    StrCpy $R4 0
    System::Call 'advapi32::RegOpenKeyExW(p ${USERS_KEY}, w "Environment", i 0, i ${KEY_READ_WRITE}, *p .R3) i .r0'
    ${If} $0 = 0
        System::Call 'advapi32::RegQueryValueExW(p R3, w "Path", p 0, *i .R2, p 0, *i .R4) i .r0'
        ${If} $0 <> 0
            StrCpy $R4 0
            StrCpy $R2 2 ; REG_EXPAND_SZ, as Windows makes the value
        ${EndIf}
        StrLen $1 $R0
        IntOp $2 $1 * 2
        IntOp $2 $2 + $R4
        IntOp $2 $2 + 16
        System::Alloc $2
        Pop $R1
        System::Call 'kernel32::RtlZeroMemory(p R1, p r2)'
        System::Call 'kernel32::lstrcpyW(p R1, w ";")'
        ${If} $R4 > 0
            IntPtrOp $0 $R1 + 2
            System::Call 'advapi32::RegQueryValueExW(p R3, w "Path", p 0, p 0, p r0, *i R4)'
        ${EndIf}
        System::Call 'kernel32::lstrcatW(p R1, w ";")'
    ${EndIf}
!macroend

; Writes the text at $0 and tells running programs of it.
!macro WritePath
    System::Call 'kernel32::lstrlenW(p r0) i .r1'
    ${If} $1 = 0
        System::Call 'advapi32::RegDeleteValueW(p R3, w "Path")'
    ${Else}
        IntOp $1 $1 * 2
        IntOp $1 $1 + 2
        System::Call 'advapi32::RegSetValueExW(p R3, w "Path", i 0, i R2, p r0, i r1)'
    ${EndIf}
    SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=2000
!macroend

!macro ClosePath
    System::Call 'advapi32::RegCloseKey(p R3)'
    System::Free $R1
!macroend

Function AddToPath
    Pop $R0
    !insertmacro ReadPath
    ${If} $R1 <> 0
        System::Call 'shlwapi::StrStrIW(p R1, w ";$R0;") p .r0'
        ${If} $0 = 0
        ${AndIf} $R4 < ${LONGEST_PATH}
            ; ";" alone was empty, and what follows the last semicolon is the entry
            IntPtrOp $0 $R1 + 2
            ${If} $R4 <= 2
                System::Call 'kernel32::lstrcpyW(p r0, w R0)'
            ${Else}
                System::Call 'kernel32::lstrcatW(p r0, w R0)'
            ${EndIf}
            !insertmacro WritePath
        ${EndIf}
        !insertmacro ClosePath
    ${EndIf}
FunctionEnd

Function un.RemoveFromPath
    Pop $R0
    !insertmacro ReadPath
    ${If} $R1 <> 0
        System::Call 'shlwapi::StrStrIW(p R1, w ";$R0;") p .r0'
        ${If} $0 <> 0
            StrLen $1 ";$R0"
            IntOp $1 $1 * 2
            IntPtrOp $1 $0 + $1
            System::Call 'kernel32::lstrlenW(p r1) i .r2'
            IntOp $2 $2 * 2
            IntOp $2 $2 + 2
            System::Call 'kernel32::RtlMoveMemory(p r0, p r1, p r2)'
            ; without the semicolons that ReadPath has added
            System::Call 'kernel32::lstrlenW(p R1) i .r2'
            ${If} $2 > 0
                IntOp $2 $2 - 1
                IntOp $2 $2 * 2
                IntPtrOp $2 $R1 + $2
                System::Call 'kernel32::RtlZeroMemory(p r2, p 2)'
            ${EndIf}
            IntPtrOp $0 $R1 + 2
            System::Call 'kernel32::lstrlenW(p R1) i .r2'
            ${If} $2 = 0
                StrCpy $0 $R1
            ${EndIf}
            !insertmacro WritePath
        ${EndIf}
        !insertmacro ClosePath
    ${EndIf}
FunctionEnd
