; Which program opens files by their ending. KV_Tr is offered below "Open with", and opens them at once only where no
; other program does.

!define OfferType "!insertmacro OfferType"
!macro OfferType ending id description
    WriteRegStr HKCU "Software\Classes\${id}" "" "${description}"
    WriteRegStr HKCU "Software\Classes\${id}\DefaultIcon" "" "$INSTDIR\kv_tr_desktop.exe,0"
    WriteRegStr HKCU "Software\Classes\${id}\shell\open\command" "" '"$INSTDIR\kv_tr_desktop.exe" "%1"'
    WriteRegNone HKCU "Software\Classes\${ending}\OpenWithProgids" "${id}"
    ReadRegStr $0 HKCU "Software\Classes\${ending}" ""
    ReadRegStr $1 HKLM "Software\Classes\${ending}" ""
    ${If} "$0$1" == ""
        WriteRegStr HKCU "Software\Classes\${ending}" "" "${id}"
    ${EndIf}
!macroend

!define RemoveType "!insertmacro RemoveType"
!macro RemoveType ending id
    ReadRegStr $0 HKCU "Software\Classes\${ending}" ""
    ${If} $0 == "${id}"
        DeleteRegValue HKCU "Software\Classes\${ending}" ""
    ${EndIf}
    DeleteRegValue HKCU "Software\Classes\${ending}\OpenWithProgids" "${id}"
    DeleteRegKey /ifempty HKCU "Software\Classes\${ending}\OpenWithProgids"
    DeleteRegKey /ifempty HKCU "Software\Classes\${ending}"
    DeleteRegKey HKCU "Software\Classes\${id}"
!macroend

; Has the system read all types again (SHCNE_ASSOCCHANGED).
!define TellOfTypes "System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'"
