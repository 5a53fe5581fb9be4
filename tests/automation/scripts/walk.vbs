' Makes a database in the current folder, fills, walks and changes it, and prints what it sees. Script
' hosts differ in how they print other letters than plain ones: of such texts the length is printed.
Option Explicit
Dim connection, records, field, line, code, index, affected, rows

Sub Say(text)
  WScript.Echo text
End Sub

Set connection = CreateObject("ADOCE.Connection.3.1")
connection.Provider = "CEDB"
connection.Open
Set records = CreateObject("ADOCE.Recordset.3.1")
records.Open "CREATE DATABASE 'script.cdb'", connection, 2, 3, 1
Say "made, recordset state " & records.State
connection.Close

connection.ConnectionString = "script.cdb"
connection.Open
connection.Execute "CREATE TABLE 'My books' (Id Integer ,'Full title' Varchar (255) ,Added Datetime ,Lent Bit ,Price Float ,Notes Text)"

records.Open "Select * from [My books]", connection, 1, 3, 1
Say "empty: " & records.RecordCount & " " & records.BOF & " " & records.EOF
For index = 1 To 3
  records.AddNew
  records("Id") = index
  records.Fields("Full title").Value = "Book " & index
  records(2) = DateSerial(2001, 3, index)
  records("Lent") = (index = 2)
  records("Price") = index / 4
  records.Update
Next
connection.Execute "UPDATE [My books] SET Notes = char(945, 1046, 26085) WHERE Id = 3"

records.MoveFirst
Do Until records.EOF
  line = records.AbsolutePosition & ":"
  For Each field In records.Fields
    If IsNull(field.Value) Then
      line = line & " (null)"
    ElseIf field.Name = "Notes" Then
      line = line & " " & Len(field.Value) & " letters"
    ElseIf field.Type = 7 Then
      line = line & " " & Year(field.Value) & "-" & Month(field.Value) & "-" & Day(field.Value)
    Else
      line = line & " " & field.Value
    End If
  Next
  Say line
  records.MoveNext
Loop

records.MoveFirst
rows = records.GetRows(2, , Array("Full title", 0))
Say "rows: " & UBound(rows, 1) & " " & UBound(rows, 2) & " " & rows(0, 1) & " " & rows(1, 1)

records.MoveFirst
records.Move 1
records.Delete
records.MoveLast
records("Price") = 12.5
records("Full title") = records("Notes")
records.Update
records.Close

Set records = connection.Execute("SELECT count(*) AS n, sum(Price) AS total FROM [My books]")
Say "left: " & records("n") & ", together " & records("total")
Say "title: " & connection.Execute("SELECT hex([Full title]) FROM [My books] WHERE Id = 3")(0)
connection.Execute "UPDATE [My books] SET Lent = 1", affected
Say "changed: " & affected

On Error Resume Next
connection.Execute "SELECT * FROM Nowhere"
code = Err.Number
Say "refused: " & Hex(code) & " " & Err.Description & " " & connection.Errors.Count
Err.Clear
On Error GoTo 0

connection.Close
connection.ConnectionString = ""
connection.Open
connection.Execute "DROP DATABASE 'script.cdb'"
Say "dropped"
connection.Close
WScript.Quit 7
