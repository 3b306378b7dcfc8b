Dim http, changes, body
Set http = CreateObject("MSXML2.ServerXMLHTTP")
http.Open "get", Address & "/page" : http.setRequestHeader "X-Own", "1" : http.setRequestHeader "x-own", "2" : http.Send
Say http.readyState, http.status, http.statusText, http.responseText  ' expect: 4 200 Fine ä€
Say http.getResponseHeader("content-type"), InStr(http.getAllResponseHeaders, "X-Twice: a" & vbCrLf) > 0, http.getResponseHeader("x-twice")  ' expect: text/plain; charset="windows-1252" True a, b
body = http.responseBody : Say UBound(body), body(0)         ' expect: 1 228
Say Requested("GET /page "), Requested("x-own: 2"), Requested("X-Own: 1")  ' expect: True True False

http.Open "POST", Address & "/missing", False, "me", "secret" : http.setRequestHeader "Content-Type", "text/x" : http.Send "a=ä"
Say http.status, http.statusText                             ' expect: 404 Not Found

' Asynchronous
Sub Changed : changes = changes & http.readyState : End Sub
Set http = CreateObject("Microsoft.XMLHTTP") : http.onreadystatechange = GetRef("Changed")
http.Open "GET", Address & "/page" : http.Send
Do Until http.readyState = 4 : Loop
Say http.status, Left(changes, 1), Right(changes, 1)         ' expect: 200 1 4
http.Open "GET", Address & "/slow" : http.Send
Say http.readyState < 4                                      ' expect: True
http.abort : Say http.readyState                             ' expect: 0

Sub Fails(number) : Say Err.Number = number : Err.Clear : End Sub
On Error Resume Next
http.Send : Fails &H80004005                                 ' expect: True
http.Open "GET", Address & "/slow" : http.Send : Say http.status : Fails &H8000000A  ' expect: True
http.Open "GET", "http://127.0.0.1:1/", False : http.Send : Fails &H80072EFD  ' expect: True
http.Open "GET", "file:///etc/hostname", False : http.Send : Fails &H80072EFD  ' expect: True
http.Open "GET", Address & "/page", False : http.setRequestHeader "X", "1" & vbCrLf & "Y: 2" : Fails 5  ' expect: True
Set http = CreateObject("MSXML2.ServerXMLHTTP") : http.setTimeouts 0, 30, 30, 40
http.Open "GET", Address & "/slow" : http.Send : Fails &H80072EE2  ' expect: True
