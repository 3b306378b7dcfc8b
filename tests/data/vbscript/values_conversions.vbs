WScript.Echo CInt(2.5) & CInt(3.5) & CInt(-2.5) & CInt(-3.5) & " " & CInt("2.5") & CInt(" 12 ") & " " & CLng("1,234") & " " & CLng("&HFF") & " " & CInt("&HFFFF") & " " & CLng("&O17")
WScript.Echo CBool("true") & CBool("False") & CBool("0") & CBool("2") & CBool(0.1) & CBool(Empty)
WScript.Echo CByte(2.5) & " " & CByte("255") & " " & CCur(1.23455) & " " & CCur("2.5") & " " & CCur(1) / 3 & " " & CSng(1) / 3 & " " & CDbl(CSng(0.1))
WScript.Echo CStr(True) & CStr(1.50) & CStr(-0.5) & CStr(1E20) & " " & CStr(0.00001) & " " & CStr(123456789.123456789) & " " & CStr(CSng(1234567.8))
WScript.Echo CDate("1/14/2006 15:30") & " " & CDate("January 14, 2006") & " " & CDate(38731) & " " & CDate(0.5) & " " & CDate("3:30 PM") & " " & CDate(0)
WScript.Echo CDbl("1e3") & " " & CDbl("$5.50") & " " & CDbl("(5)") & " " & CDbl("-.5") & " " & CDbl(#1/1/2000 12:00:00 PM#)
WScript.Echo IsNumeric("12") & IsNumeric("1e5") & IsNumeric("&HFF") & IsNumeric("$1,000.50") & IsNumeric("12abc") & IsNumeric("") & IsNumeric(" ") & IsNumeric(Empty) & IsNumeric(Null) & IsNumeric(True) & IsNumeric(Now)
WScript.Echo IsDate("1/14/2006") & IsDate("12:30") & IsDate("Jan 14, 2006") & IsDate("abc") & IsDate(5) & IsDate(#1/1/2000#) & IsDate(Null) & IsDate("13/13/2006")
WScript.Echo IsEmpty(Empty) & IsNull(Null) & IsArray(Array()) & IsArray(5) & IsObject(5)
On Error Resume Next
x = CInt(32767.5) : WScript.Echo Err.Number : Err.Clear
x = CInt("abc") : WScript.Echo Err.Number : Err.Clear
x = CInt("") : WScript.Echo Err.Number : Err.Clear
x = CInt(Null) : WScript.Echo Err.Number : Err.Clear
x = CInt(Array(1)) : WScript.Echo Err.Number : Err.Clear
x = CByte(-1) : WScript.Echo Err.Number : Err.Clear
x = CByte(256) : WScript.Echo Err.Number : Err.Clear
x = CLng(2147483647.5) : WScript.Echo Err.Number : Err.Clear
x = CSng(1e39) : WScript.Echo Err.Number : Err.Clear
x = CDate("nope") : WScript.Echo Err.Number : Err.Clear
x = CDate(3000000) : WScript.Echo Err.Number : Err.Clear
x = CBool("yes") : WScript.Echo Err.Number : Err.Clear
x = CStr(Null) : WScript.Echo Err.Number : Err.Clear
x = CDbl("1e400") : WScript.Echo Err.Number : Err.Clear
x = CCur(1e15) : WScript.Echo Err.Number : Err.Clear
x = CInt(Nothing) : WScript.Echo Err.Number : Err.Clear
