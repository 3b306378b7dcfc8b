Dim http : Set http = CreateObject("MSXML2.ServerXMLHTTP")
On Error Resume Next
http.Open "GET", Address & "/slow" : http.Send
Say "never"
