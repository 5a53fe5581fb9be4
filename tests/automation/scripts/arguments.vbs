' Reads the database whose path is given as a README would have it, and calls Execute with each form of
' arguments. Each statement adds one record: the printed numbers tell whether one was run twice or not at all.
Option Explicit
Dim connection, books, affected, list(1), index, path

path = WScript.Arguments(0)
Set connection = CreateObject("ADOCE.Connection.3.1")
connection.Open path
Set books = CreateObject("ADOCE.Recordset.3.1")
books.Open "SELECT * FROM Books WHERE Pages > 600", connection, 1, 3
Do Until books.EOF
  WScript.Echo books("Title")
  books.MoveNext
Loop
books.Close

Sub Count(form)
  Dim records
  Set records = connection.Execute("SELECT count(*) FROM Books", , 1)
  WScript.Echo form & ": " & records(0)
  records.Close
End Sub

Const Insert = "INSERT INTO Books (Title, Pages) VALUES ('another', 1)"
connection.Execute Insert
Count "sql"
connection.Execute Insert, , 1
Count "sql, , 1"
connection.Execute Insert, affected
Count "sql, n (" & affected & ")"
affected = "text"
connection.Execute Insert, affected, 1
Count "sql, n, 1 (" & affected & ")"
connection.Execute Insert, (affected), 1
Count "sql, (n), 1"
connection.Execute Insert, list(1), 1
Count "sql, list(1), 1 (" & list(1) & ")"
connection.Execute Insert, Empty, 1
Count "sql, Empty, 1"
connection.Execute Insert, Null
Count "sql, Null"
connection.Execute Insert, 7, 1
Count "sql, 7, 1"
Call connection.Execute(Insert, , 8)
Count "call"
books.Open "Books", connection, , 3, 2
books.AddNew
books("Title") = "begun and not updated"
books.Close
Count "left out in Open, and a record begun"
books.Open "Books", connection
WScript.Echo "cursor " & books.CursorType & ", lock " & books.LockType
books.Move 2
WScript.Echo books("Title")
books.Close

On Error Resume Next
connection.Execute "INSERT INTO Loans (Book) VALUES (4711)", , 1
WScript.Echo "foreign key: " & Hex(Err.Number) & " " & Err.Description
Err.Clear
connection.Execute "nonsense", , 1
WScript.Echo "refused: " & Hex(Err.Number)
On Error GoTo 0
connection.Close
