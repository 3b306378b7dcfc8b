Dim d, k, other, i
Set d = CreateObject("scripting.dictionary")
Say TypeName(d), d.CompareMode, d.Count                      ' expect: Dictionary 0 0

' Numbers of any kind are one key, texts are other keys, and so are Empty and Null.
d.Add 1, "one"
Say d.Exists(CLng(1)), d.Exists(1.0), d.Exists("1"), d.Exists(CCur(1))  ' expect: True True False True
d(Empty) = "empty" : d(Null) = "null" : d("") = "text" : d(0) = "zero"
Say d.Count, d(Empty), d(Null), d(""), d(-0.0)               ' expect: 5 empty null text zero
Set other = CreateObject("Scripting.Dictionary")
d.Add other, "object"
Say d(other), d.Exists(CreateObject("Scripting.Dictionary")) ' expect: object False

' The order is that of adding, whatever goes and comes.
d.RemoveAll
For i = 1 To 40 : d.Add "k" & i, i : Next
For i = 1 To 36 : d.Remove "k" & i : Next
d("new") = 0
d.Key("k38") = "renamed"
d.Add "k38", "again"
Say Join(d.Keys, " ")                                        ' expect: k37 renamed k39 k40 new k38
Say Join(d.Items, " ")                                       ' expect: 37 38 39 40 0 again
For i = 1 To 200 : d.Key("renamed") = "r" & i : d.Key("r" & i) = "renamed" : Next
Say d.Count, d("renamed"), d.Exists("r7")                    ' expect: 6 38 False

' Walking meanwhile does not mind changes.
For Each k In d : d.RemoveAll : Next
Say d.Count                                                  ' expect: 0

' Items keep arrays and objects; assigning without Set takes the default value.
d("a") = Array(1, 2) : Set d("o") = other : other("x") = 7
i = d("a") : i(0) = 9
Say d("a")(0), d("o")("x"), d.Item("o").Count                ' expect: 1 7 1

d.RemoveAll : d.CompareMode = vbTextCompare : d("Grüße") = 1
Say d("GRÜSSE"), d("gRÜßE"), d.Count                         ' expect:  1 2

Sub Fails(number) : Say Err.Number = number : Err.Clear : End Sub
On Error Resume Next
d.Add "grüße", 2 : Fails 457                                 ' expect: True
d.Key("absent") = 1 : Fails 32811                            ' expect: True
d.Key("grüße") = "grüsse" : Fails 457                        ' expect: True
d.Remove "absent" : Fails 32811                              ' expect: True
d.CompareMode = 0 : Fails 5                                  ' expect: True
d.Add Array(1), 1 : Fails 5                                  ' expect: True
d.Add "one" : Fails 450                                      ' expect: True
d.Count = 3 : Fails 438                                      ' expect: True
Set d = CreateObject("Scripting.Dictionary") : Set e = CreateObject("Scripting.Dictionary")
Set d("self") = d : Set d("other") = e : e("list") = Array(e, d, "text")
Say TypeName(d("self")("other")("list")(1)("self"))          ' expect: Dictionary
