' The component in a script, which knows no types, no records and only variants by reference.
Option Explicit
Dim bad : bad = 0

Sub Expect(what, got, wanted)
    Dim same
    If VarType(wanted) = vbDouble Then
        same = Abs(got - wanted) < 0.0000001
    Else
        same = (got = wanted)
    End If
    If same Then Exit Sub
    bad = bad + 1
    WScript.Echo "FAILED " & what & ": " & got & " instead of " & wanted
End Sub

Dim tr, calc
Set tr = CreateObject("KV_Tr.clsTr")
Expect "TypeName", TypeName(tr), "_clsTr"
Expect "PI", tr.PI, 4 * Atn(1)
Set calc = tr.oCalcTr

' Control points: an array of arrays, then a table behind them.
Dim points(3), table(1, 4)
points(0) = Array("A", 0, 0, 100, 200)
points(1) = Array("B", 10, 0, 120, 205)
points(2) = Array("C", 0, "10", 103, 240)
points(3) = Array("D", 10, 10, 123, 245.02)
calc.AddXY4Tr points, False
Expect "pairs of an array", calc.lFullCnt, 4
table(0, 0) = "E" : table(0, 1) = 5 : table(0, 2) = 5 : table(0, 3) = 111.5 : table(0, 4) = 222.5
table(1, 0) = "F" : table(1, 1) = 7 : table(1, 2) = 3 : table(1, 3) = 114.9 : table(1, 4) = 215.5
calc.AddXY4Tr table, True
Expect "pairs of a table", calc.lFullCnt, 6

calc.eTrType = -1
calc.DoCalcTr
calc.ExcludeByIx 3, True
Expect "excluded", calc.lNotUsedCnt, 1
Expect "rms of exact points", calc.dRmsErr, CDbl(0)
Dim pairs, all, count
pairs = calc.vXYs
Expect "rows", UBound(pairs, 1), 5
Expect "fields", UBound(pairs, 2), 7
Expect "name", pairs(3, 0), "D"
Expect "residual", pairs(3, 6), -0.02
Expect "mark", pairs(3, 7), True
calc.GetAllXYs all, count
Expect "count", count, 6
Expect "pair", all(4, 3), 111.5
calc.GetXYs all, count, False
Expect "excluded pairs", UBound(all, 1), 0
Expect "excluded pair", all(0, 0), "D"

' A record passes from one object to another unread; its fields are an array.
Dim x, y, prm
tr.udtTrPrm = calc.udtTrPrm
tr.TrXY 5, 6, x, y
Expect "TrXY first", x, 100 + 2 * 5 + 0.3 * 6
Expect "TrXY second", y, 200 + 0.5 * 5 + 4 * 6
prm = tr.vTrPrm
Expect "fields of the record", UBound(prm), 44
Expect "type", prm(0), -1
prm(1) = 1000
tr.vTrPrm = prm
tr.TrXY 0, 0, x, y
Expect "first with the array", x, CDbl(1000)
prm(1) = 100
tr.udtTrPrm = prm
tr.TrXY 0, 0, x, y
Expect "first with the array as record", x, CDbl(100)

Dim a0, a1, a2, b0, b1, b2, inverse
Expect "bGetAffinPrm", tr.bGetAffinPrm(a0, a1, a2, b0, b1, b2), True
Expect "a0", a0, CDbl(100)
Expect "a1", a1, CDbl(2)
Expect "a2", a2, 0.3
Expect "b0", b0, CDbl(200)
Expect "b1", b1, 0.5
Expect "b2", b2, CDbl(4)
Expect "bGetInversePrm", tr.bGetInversePrm(inverse), True
tr.udtTrAffinPrm = inverse
tr.TrXY 111.8, 226.5, x, y
Expect "back, first", x, CDbl(5)
Expect "back, second", y, CDbl(6)

' Arrays, also onto themselves.
Dim xs, ys
xs = Array(1, 2) : ys = Array(3, 4)
Expect "bTrXYArr", calc.bTrXYArr(xs, ys, xs, ys), True
Expect "second of the firsts", xs(1), 100 + 2 * 2 + 0.3 * 4
Expect "first of the seconds", ys(0), 200 + 0.5 * 1 + 4 * 3

' Optional arguments, texts, the smaller classes.
Expect "listing", InStr(tr.sListHelmertTrPrm, "A0") > 0 Or Len(tr.sListHelmertTrPrm) > 50, True
Expect "lines of points", UBound(Split(calc.sListXYs, vbCrLf)) >= 6, True
calc.DoCalc_Helmert3
Dim file, name
name = CreateObject("Scripting.FileSystemObject").GetSpecialFolder(2) & "\kv_tr_script.txt"
Set file = CreateObject("KV_Tr.clsFile")
file.OpenIt name
file.Print "one"
file.Print "two"
file.CloseIt
file.OpenIt name, True
Expect "line", file.ReadLine, "one"
Expect "at end", file.AtEnd, False
file.CloseIt
CreateObject("Scripting.FileSystemObject").DeleteFile name
Expect "title", CreateObject("KV_Tr.clsComponent").sAppTitle, ""
Expect "component", CreateObject("KV_Tr.clsDebug").sComponentName, "KV_Tr"

' Errors have their numbers.
On Error Resume Next
calc.AddXY4Tr "nothing", False
Expect "an argument of a wrong type", Err.Number, 13
Err.Clear
tr.TearDown
Set calc = tr.oCalcTr
Expect "the engine after TearDown", Err.Number, 91
Expect "source", Err.Source, "KV_Tr"
Err.Clear
On Error Goto 0

If bad = 0 Then WScript.Echo "all as expected"
WScript.Quit bad
