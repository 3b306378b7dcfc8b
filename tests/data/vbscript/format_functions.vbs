WScript.Echo FormatNumber(1234.567) & " " & FormatNumber(1234.567, 1) & " " & FormatNumber(0.5, 2, 0) & " " & FormatNumber(-0.5, 2, 0) & " " & FormatNumber(-5, 2, -1, -1) & " " & FormatNumber(1234567, 0, -1, 0, 0) & " " & FormatNumber("12.3") & " " & FormatNumber(2.5, 0) & " " & FormatNumber(Empty)
WScript.Echo FormatCurrency(1234.5) & " " & FormatCurrency(-1234.5) & " " & FormatCurrency(-1, 2, -1, 0) & " " & FormatCurrency(1.005, 3) & " " & FormatCurrency(99.5, 0)
WScript.Echo FormatPercent(0.1255, 1) & " " & FormatPercent(0.5) & " " & FormatPercent(-0.1) & " " & FormatPercent(12, 0) & " " & FormatPercent(-0.25, 0, -1, -1)
WScript.Echo FormatNumber(1e10) & " " & FormatNumber(123456789012345678) & " " & FormatNumber(0.000001, 4) & " " & FormatNumber(True)
On Error Resume Next
x = FormatNumber("abc") : WScript.Echo Err.Number : Err.Clear
x = FormatNumber(1, -2) : WScript.Echo Err.Number : Err.Clear
x = FormatNumber(1, 2, 5) : WScript.Echo Err.Number : Err.Clear
x = FormatPercent("") : WScript.Echo Err.Number : Err.Clear
