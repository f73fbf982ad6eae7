Attribute VB_Name = "KV_Tr_example"
' Fits a Helmert transformation to control points of a worksheet and transforms its other points.
' Not run by its author, who had no Office: docs/windows-macros.md tells what was run.
'
' Needs the reference "KV_Tr: plane coordinate transformations" (Tools, References). The active sheet has one control
' point a row from row 2 on: identifier, two source and two destination coordinates in the columns A to E; columns F and
' G receive the residuals. Column I and J, from row 2 on, have the points to transform; K and L receive the results.
Option Explicit

Public Sub FitAndTransform()
    Dim transformation As KV_Tr.clsTr
    Dim engine As KV_Tr.clsTrCalc
    Dim pairs() As KV_Tr.typeXYs4Tr
    Dim sheet As Object
    Dim count As Long, i As Long, row As Long
    Dim first As Double, second As Double

    On Error GoTo Failed
    Set sheet = ActiveSheet
    Do While Not IsEmpty(sheet.Cells(count + 2, 1).Value)
        count = count + 1
    Loop
    If count < 2 Then
        MsgBox "Two control points at least are needed from row 2 on."
        Exit Sub
    End If

    ReDim pairs(0 To count - 1)   ' the component wants arrays from 0 on
    For i = 0 To count - 1
        With pairs(i)
            .sId = sheet.Cells(i + 2, 1).Value
            .dXsour = sheet.Cells(i + 2, 2).Value
            .dYsour = sheet.Cells(i + 2, 3).Value
            .dXdest = sheet.Cells(i + 2, 4).Value
            .dYdest = sheet.Cells(i + 2, 5).Value
        End With
    Next

    Set transformation = New KV_Tr.clsTr
    Set engine = transformation.oCalcTr
    engine.setLanguageID 2057     ' English; Hungarian without this line
    engine.AddXY4Tr pairs, False
    engine.eTrType = TR_HELMERT
    engine.DoCalcTr
    transformation.udtTrPrm = engine.udtTrPrm

    engine.GetAllXYs pairs, count
    For i = 0 To count - 1
        sheet.Cells(i + 2, 6).Value = pairs(i).dXerr
        sheet.Cells(i + 2, 7).Value = pairs(i).dYerr
    Next

    row = 2
    Do While Not IsEmpty(sheet.Cells(row, 9).Value)
        transformation.TrXY sheet.Cells(row, 9).Value, sheet.Cells(row, 10).Value, first, second
        sheet.Cells(row, 11).Value = first
        sheet.Cells(row, 12).Value = second
        row = row + 1
    Loop
    MsgBox "Root mean square error of a point: " & Format(engine.dRmsErr, "0.000") & " m"
    transformation.TearDown
    Exit Sub

Failed:
    MsgBox "Error " & Err.Number & ": " & Err.Description
    If Not transformation Is Nothing Then transformation.TearDown
End Sub
