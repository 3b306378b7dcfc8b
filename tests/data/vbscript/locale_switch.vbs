WScript.Echo GetLocale & " " & SetLocale(1031) & " " & GetLocale
WScript.Echo 1.5 & " " & CDbl("1.234,5") & " " & FormatNumber(1234.5) & " " & #1/14/2006# & " " & FormatCurrency(-2) & " " & MonthName(3) & " " & WeekdayName(1, True)
WScript.Echo SetLocale("en-gb") & " " & #1/14/2006 15:30:00# & " " & FormatCurrency(2)
WScript.Echo SetLocale("en-us") & " " & 1.5
