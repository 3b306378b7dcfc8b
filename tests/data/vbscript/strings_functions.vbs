WScript.Echo Left("abc", 2) & Left("abc", 10) & "[" & Left("abc", 0) & "]" & Right("abc", 2) & Right("abc", 9) & Mid("abc", 2) & "[" & Mid("abc", 4) & "]" & Mid("abc", 1, 99)
WScript.Echo Len("") & Len(12345) & Len(True) & Len(1.5) & " " & LenB("ab")
WScript.Echo "[" & Trim("  a b  ") & "][" & LTrim("  a ") & "][" & RTrim(" a  ") & "]" & Len(Trim(vbTab & " x"))
WScript.Echo InStr("abcabc", "c") & InStr(4, "abcabc", "c") & InStr("abc", "x") & InStr("abc", "") & InStr("", "a") & InStr("", "") & InStr(2, "abc", "") & InStr(9, "abc", "a") & InStr(1, "ABC", "b", 1) & InStr(1, "ABC", "b", 0)
WScript.Echo InStrRev("abcabc", "c") & InStrRev("abcabc", "c", 5) & InStrRev("abc", "x") & InStrRev("abc", "") & InStrRev("", "a") & InStrRev("ABC", "b", -1, 1) & InStrRev("abc", "c", 2)
WScript.Echo StrReverse("abc") & String(3, "xyz") & String(2, 65) & "[" & Space(2) & "]" & String(0, "a")
WScript.Echo UCase("abcä1") & LCase("ABCÄ1") & UCase(Empty) & UCase(12)
WScript.Echo Asc("A") & " " & Asc("ABC") & " " & Chr(65) & " " & Asc(Chr(128)) & " " & AscW(Chr(128)) & " " & AscW(ChrW(8364)) & " " & Asc(ChrW(20000))
WScript.Echo Hex(-1) & " " & Hex(CLng(-1)) & " " & Hex(255.5) & " " & Hex("16") & " " & Hex(True) & " " & Oct(64) & " " & Oct(-1) & " " & Hex(Empty) & " " & Hex(CByte(200))
WScript.Echo IsNull(Left(Null, 1)) & IsNull(Mid(Null, 1)) & IsNull(Trim(Null)) & IsNull(LCase(Null)) & IsNull(InStr(Null, "a")) & IsNull(InStr("a", Null)) & IsNull(Hex(Null)) & IsNull(LenB(Null))
WScript.Echo Join(Split("a b c")) & " " & Join(Split("a,b,c", ","), "") & " " & UBound(Split("a,b,c", ",", 0)) & " " & Join(Split("aXXbXXc", "XX"), "-") & " " & Join(Split("a,b", ""), "|")
WScript.Echo Replace("aXbxc", "x", "-", 1, -1, 1) & " " & Replace("abcabc", "b", "", 3) & " " & Replace("aaaa", "a", "b", 2, 2) & " " & Replace("abc", "c", "cc")
WScript.Echo StrComp("a", "b", 1) & StrComp("B", "a", 1) & StrComp("_", "1", 1) & StrComp("ä", "b", 1) & StrComp("ä", "b") & StrComp("abc", "ABC", 1) & StrComp("ab", "abc")
WScript.Echo Escape("aä1+/@*_-." & ChrW(300)) & " " & Unescape("%u0041%42%zz%u00") & " " & Escape("100% & more")
WScript.Echo LenB(ChrB(65)) & LenB(ChrB(65) & ChrB(0)) & (ChrB(65) & ChrB(0)) & AscB("A") & " " & LenB(LeftB("abc", 3)) & LenB(MidB("abc", 2)) & LenB(RightB("abc", 4)) & " " & InStrB("abc", "b") & MidB("abc", 3, 2)
On Error Resume Next
x = Left("a", -1) : WScript.Echo Err.Number : Err.Clear
x = Mid("a", 0) : WScript.Echo Err.Number : Err.Clear
x = Mid("a", 1, -1) : WScript.Echo Err.Number : Err.Clear
x = InStr(0, "a", "a") : WScript.Echo Err.Number : Err.Clear
x = InStrRev("a", "a", 0) : WScript.Echo Err.Number : Err.Clear
x = Space(-1) : WScript.Echo Err.Number : Err.Clear
x = String(-1, "a") : WScript.Echo Err.Number : Err.Clear
x = String(2, "") : WScript.Echo Err.Number : Err.Clear
x = Asc("") : WScript.Echo Err.Number : Err.Clear
x = Chr(256) : WScript.Echo Err.Number : Err.Clear
x = Chr(-1) : WScript.Echo Err.Number : Err.Clear
x = ChrW(65536) : WScript.Echo Err.Number : Err.Clear
x = Replace("a", "a", "b", 0) : WScript.Echo Err.Number : Err.Clear
x = Replace(Null, "a", "b") : WScript.Echo Err.Number : Err.Clear
x = Split(Null) : WScript.Echo Err.Number : Err.Clear
x = Split("a", ",", -2) : WScript.Echo Err.Number : Err.Clear
x = Join("a") : WScript.Echo Err.Number : Err.Clear
x = StrComp("a", "b", 3) : WScript.Echo Err.Number : Err.Clear
x = Left(Array(1), 1) : WScript.Echo Err.Number : Err.Clear
x = Left("abc", Null) : WScript.Echo Err.Number : Err.Clear
x = StrReverse(Null) : WScript.Echo Err.Number : Err.Clear
x = Left("a", "x") : WScript.Echo Err.Number : Err.Clear
