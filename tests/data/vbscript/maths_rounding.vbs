WScript.Echo Round(0.5) & Round(1.5) & Round(2.5) & Round(-0.5) & Round(-1.5) & " " & Round(2.345, 2) & " " & Round(1.25, 1) & " " & Round(1.35, 1) & " " & Round(1234.5678, 3) & " " & Round("2.5") & " " & Round(True) & " " & Round(1e300, 5)
WScript.Echo Int(2.7) & Int(-2.1) & Fix(2.7) & Fix(-2.7) & Int("3.9") & Int(Empty) & Fix(-0.5) & Int(-0.5)
WScript.Echo Abs(-5) & Abs("-2.5") & Abs(True) & Abs(Empty) & Sgn(-2) & Sgn(0) & Sgn("3") & Sgn(True)
WScript.Echo 7 \ 2 & " " & -7 \ 2 & " " & 7.5 \ 2 & " " & 6.5 \ 2 & " " & -7 Mod 3 & " " & 7 Mod -3 & " " & 7.6 Mod 3 & " " & "9" Mod "4"
WScript.Echo 2 ^ 10 & " " & 2 ^ -1 & " " & (-2) ^ 3 & " " & 0 ^ 0 & " " & 4 ^ 0.5 & " " & Null & "x"
WScript.Echo Sqr("16") & " " & Exp(0) & " " & Log(Exp(2)) & " " & Atn(0) & " " & Cos(0) & " " & Tan(0) & " " & Round(Sin(1), 4)
WScript.Echo 1e300 & " " & 1e-10 & " " & 0.00012 & " " & 123456789012 & " " & 1.5e15 & " " & -1e15 & " " & 0.1 & " " & 1 / 8 & " " & 1e14 + 0.5
WScript.Echo CCur("922337203685477.5807") & " " & CCur(0.00005) & " " & CCur(0.00015) & " " & CCur(-1.5) * 3 & " " & CCur(2) * 0.5
WScript.Echo CCur(922337203685477) & " " & Round(CCur(2.345), 2) & " " & Round(CCur(-2.355), 2) & " " & CByte(True)
Rnd(-1)
Randomize 1
WScript.Echo CStr(Rnd) & " " & (Rnd(0) = Rnd(0))
WScript.Echo RGB(0, 0, 0) & " " & RGB(255, 255, 255) & " " & RGB(1000, 0, 0) & " " & RGB(1.5, 0, 0)
On Error Resume Next
x = Sqr(-1) : WScript.Echo Err.Number : Err.Clear
x = Log(0) : WScript.Echo Err.Number : Err.Clear
x = Exp(710) : WScript.Echo Err.Number : Err.Clear
x = 1 \ 0 : WScript.Echo Err.Number : Err.Clear
x = 1 Mod 0.4 : WScript.Echo Err.Number : Err.Clear
x = 0 / 0 : WScript.Echo Err.Number : Err.Clear
x = 1 / 0 : WScript.Echo Err.Number : Err.Clear
x = 2 ^ 1024 : WScript.Echo Err.Number : Err.Clear
x = (-1) ^ 0.5 : WScript.Echo Err.Number : Err.Clear
x = Round(1, -1) : WScript.Echo Err.Number : Err.Clear
x = "abc" * 2 : WScript.Echo Err.Number : Err.Clear
x = 3000000000 \ 1 : WScript.Echo Err.Number : Err.Clear
x = Array(1) + 1 : WScript.Echo Err.Number : Err.Clear
x = RGB(-1, 0, 0) : WScript.Echo Err.Number : Err.Clear
x = Sgn("x") : WScript.Echo Err.Number : Err.Clear
x = CCur(922337203685477) * 10 : WScript.Echo Err.Number : Err.Clear
