Dim s, t, bytes, fso : Set fso = CreateObject("Scripting.FileSystemObject")
Set s = CreateObject("ADODB.Stream")
Say TypeName(s), s.Type, s.Charset, s.State                  ' expect: Stream 2 Unicode 0
s.Charset = "utf-8" : s.Open
s.WriteText "ä€", 1 : s.WriteText "two" & vbLf & "x"
Say s.State, s.Position, s.Size, s.EOS                       ' expect: 1 15 15 True
s.Position = 0
Say s.ReadText(1), s.Position, s.ReadText(-2), s.EOS         ' expect: ä 5 € False
s.LineSeparator = 10 : s.SkipLine
Say s.ReadText, s.EOS, "[" & s.ReadText & "]"                ' expect: x True []

' The idiom that saves text without a mark
s.Position = 0 : s.Type = 1 : s.Position = 3
Set t = CreateObject("ADODB.Stream") : t.Type = 1 : t.Open
s.CopyTo t, 5 : Say t.Size, s.Position                       ' expect: 5 8
t.SaveToFile "t.bin", 2 : Say t.Position, fso.GetFile("t.bin").Size  ' expect: 0 5

bytes = t.Read(2) : Say UBound(bytes), bytes(0), bytes(1), VarType(bytes(0)), IsNull(t.Read(0))  ' expect: 1 195 164 17 True
Say VarType(bytes), TypeName(bytes), LenB(bytes), AscB(MidB(bytes, 2, 1)), VarType(Array(1))  ' expect: 8209 Byte() 2 164 8204
t.Write bytes : t.SetEOS : Say t.Size, t.Position             ' expect: 4 4
t.Position = 0 : t.LoadFromFile "t.bin" : Say t.Size, t.Position  ' expect: 5 0
t.Position = 0 : t.Type = 2 : t.Charset = "windows-1252" : Say t.ReadText(3)  ' expect: Ã¤â
t.Position = 0 : t.Charset = "unicode" : Say Len(t.ReadText)  ' expect: 2

Sub Fails(number) : Say Err.Number = number : Err.Clear : End Sub
On Error Resume Next
t.Read : Fails 3219                                          ' expect: True
t.Type = 1 : Fails 3219                                      ' expect: True
t.Charset = "klingon" : Fails 3219                           ' expect: True
t.Open : Fails 3705                                          ' expect: True
t.Close : t.ReadText : Fails 3704                            ' expect: True
s.WriteText "x" : Fails 3219                                 ' expect: True
s.Write "x" : Fails 3001                                     ' expect: True
s.Position = -1 : Fails 3001                                 ' expect: True
s.Position = 2147483647 : Fails 7                            ' expect: True
s.SaveToFile "t.bin" : Fails 3004                            ' expect: True
s.LoadFromFile "none" : Fails 3002                           ' expect: True
