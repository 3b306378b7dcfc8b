' expect: 7
Class Node
Public Link, b, c
End Class
Do : Set o = New Node : Set p = New Node : Set o.Link = p : Set p.Link = o : Loop
