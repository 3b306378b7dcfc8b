[Canvas01]
FileName=canvases\inset.can
[Canvas02]
FileName=canvases\live.can
