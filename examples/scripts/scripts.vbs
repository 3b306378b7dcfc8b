' Four small scripts in one. They look after the canvas called "Scripts", wherever it is open.
Option Explicit

Const StrongWind = 25      ' in the unit of the weather station
Const WindSpeed = 8        ' field of the weather record
Const Gust = 9

Const SpokenClock = 1      ' layers of the canvas
Const WeatherLine = 2
Const RequestLine = 3
Const Compass = 1

Dim visitors, requests, stormy
Set visitors = CreateObject("Scripting.Dictionary")

Function Page()
    Dim slot, canvas
    Set Page = Nothing
    For slot = 1 To MaxCanvas
        Set canvas = Portfolio.Canvas(slot)
        If Not canvas Is Nothing Then
            If canvas.Name = "Scripts" Then Set Page = canvas
        End If
    Next
End Function

Sub Show(layer, text)
    If Page() Is Nothing Then Exit Sub
    Page().Text(layer).Text = text
End Sub

' --- A clock that speaks: the layer's own text is replaced just before it is drawn ---

Function Spoken(moment)
    Dim names, five, past, hours
    names = Array("twelve", "one", "two", "three", "four", "five", "six", "seven", "eight", "nine", "ten", "eleven")
    past = Array("", "five past ", "ten past ", "a quarter past ", "twenty past ", "twenty-five past ", "half past ", _
                 "twenty-five to ", "twenty to ", "a quarter to ", "ten to ", "five to ")
    five = (Minute(moment) + 2) \ 5
    hours = Hour(moment)
    If five > 6 Then hours = hours + 1
    Spoken = past(five Mod 12) & names(hours Mod 12)
    If five Mod 12 = 0 Then Spoken = Spoken & " o'clock"
End Function

Sub TextUpdate(canvas, index)
    If index = SpokenClock Then
        Portfolio.Canvas(canvas).Text(index).ProcessedString = "It is " & Spoken(Now) & "."
    End If
End Sub

' --- A picture that turns: six degrees each time that its layer is due ---

Sub GraphicUpdate(canvas, index)
    If index <> Compass Then Exit Sub
    With Portfolio.Canvas(canvas).Graphic(index)
        .RotationAngle = (.RotationAngle + 6) Mod 360
    End With
End Sub

' --- A weather alarm: a line in alarms.log when the wind becomes strong, and when it calms down ---

Sub WriteAlarm(line)
    Const ForAppending = 8
    Dim file
    Set file = CreateObject("Scripting.FileSystemObject").OpenTextFile("alarms.log", ForAppending, True)
    file.WriteLine vbFormat(Now, "yyyy-mm-dd hh:nn:ss") & "  " & line
    file.Close
End Sub

Sub NewCSVData()
    Dim wind, strong
    wind = Portfolio.VWS.LastData(WindSpeed)
    strong = wind >= StrongWind
    If strong And Not stormy Then WriteAlarm "strong wind: " & wind & ", gusts " & Portfolio.VWS.LastData(Gust)
    If stormy And Not strong Then WriteAlarm "the wind has calmed down: " & wind
    stormy = strong
    Show WeatherLine, "Wind " & vbFormat(wind, "0.0") & IIfText(strong, "  (strong)", "")
End Sub

Function IIfText(condition, yes, no)
    If condition Then IIfText = yes Else IIfText = no
End Function

' --- A counter of requests to the built-in web server ---

Sub WebRequest(address, path)
    requests = requests + 1
    visitors(address) = visitors(address) + 1
    Show RequestLine, requests & " requests, " & visitors.Count & " visitors; last " & path
End Sub

Sub Startup()
    requests = 0
    stormy = False
    Show RequestLine, "No requests yet"
End Sub
