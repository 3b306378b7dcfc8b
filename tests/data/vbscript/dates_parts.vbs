d = #1/14/2006 3:30:05 PM#
WScript.Echo Year(d) & " " & Month(d) & " " & Day(d) & " " & Hour(d) & " " & Minute(d) & " " & Second(d) & " " & Weekday(d) & " " & Weekday(d, 2) & " " & Weekday("1/15/2006", vbMonday)
WScript.Echo DatePart("yyyy", d) & DatePart("q", d) & DatePart("m", d) & DatePart("y", d) & DatePart("d", d) & DatePart("w", d) & DatePart("ww", d) & DatePart("h", d) & DatePart("n", d) & DatePart("s", d)
WScript.Echo DatePart("ww", #12/31/2006#) & " " & DatePart("ww", #1/1/2006#, 2, 2) & " " & DatePart("ww", #1/2/2006#, 2, 2) & " " & DatePart("ww", #1/7/2006#, 1, 3) & " " & DatePart("w", d, 2)
WScript.Echo DateSerial(2006, 1, 14) & " " & DateSerial(2006, 14, 1) & " " & DateSerial(2006, 3, 0) & " " & DateSerial(2006, 1, -1) & " " & DateSerial(99, 1, 1) & " " & DateSerial(29, 1, 1) & " " & DateSerial(2004, 2, 29)
WScript.Echo TimeSerial(15, 30, 5) & " " & TimeSerial(12, -15, 0) & " " & TimeSerial(25, 0, 0) & " " & TimeSerial(0, 0, 3661)
WScript.Echo DateValue("1/14/2006 15:30") & " " & TimeValue("1/14/2006 15:30") & " " & DateValue("14 January 2006") & " " & DateValue(d) & " " & TimeValue(d)
WScript.Echo MonthName(1) & MonthName(12, True) & " " & WeekdayName(1) & " " & WeekdayName(7, True) & " " & WeekdayName(1, False, 2)
WScript.Echo FormatDateTime(d) & " | " & FormatDateTime(d, 1) & " | " & FormatDateTime(d, 2) & " | " & FormatDateTime(d, 3) & " | " & FormatDateTime(d, 4) & " | " & FormatDateTime(#1/14/2006#)
WScript.Echo d + 1 & " " & d - 0.5 & " " & #1/2/2006# - #1/1/2006# & " " & CDbl(#1/1/2000#) & " " & (d > #1/14/2006#) & " " & Int(d)
WScript.Echo IsNull(Year(Null)) & IsNull(DateAdd("d", 1, Null)) & IsNull(DateDiff("d", Null, d)) & IsNull(Weekday(Null)) & IsNull(DatePart("d", Null))
WScript.Echo DateDiff("ww", #1/1/2006#, #1/9/2006#, vbMonday) & DateDiff("y", #1/1/2006#, #1/3/2006#) & DateDiff("h", #1/1/2006 11:59:00 PM#, #1/2/2006#) & DateDiff("d", "1/1/2006", "2/1/2006") & DateDiff("m", #1/1/2006#, #12/1/2005#)
WScript.Echo DateAdd("YYYY", -1, #2/29/2004#) & " " & DateAdd("m", 13, #12/31/2005#) & " " & DateAdd("s", -1, #1/1/2006#) & " " & DateAdd("ww", 2, #1/1/2006#) & " " & DateAdd("n", 1.5, #1/1/2006#)
On Error Resume Next
x = Month("x") : WScript.Echo Err.Number : Err.Clear
x = MonthName(0) : WScript.Echo Err.Number : Err.Clear
x = MonthName(13) : WScript.Echo Err.Number : Err.Clear
x = WeekdayName(8) : WScript.Echo Err.Number : Err.Clear
x = Weekday(d, 8) : WScript.Echo Err.Number : Err.Clear
x = DateSerial(10000, 1, 1) : WScript.Echo Err.Number : Err.Clear
x = DateAdd("yyyy", 9000, d) : WScript.Echo Err.Number : Err.Clear
x = DateAdd("d", Null, d) : WScript.Echo Err.Number : Err.Clear
x = DateDiff("s", #1/1/1900#, #1/1/2100#) : WScript.Echo Err.Number : Err.Clear
x = DatePart("z", d) : WScript.Echo Err.Number : Err.Clear
x = DateValue("x") : WScript.Echo Err.Number : Err.Clear
x = DateValue(Null) : WScript.Echo Err.Number : Err.Clear
x = FormatDateTime(d, 5) : WScript.Echo Err.Number : Err.Clear
x = TimeSerial(40000, 0, 0) : WScript.Echo Err.Number : Err.Clear
