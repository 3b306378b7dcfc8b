Dim fso, f, folder, item, names
Set fso = CreateObject("Scripting.FileSystemObject")

' Paths as texts
Say fso.BuildPath("c:\x", "y"), fso.BuildPath("c:\", "\y"), fso.BuildPath("c:", "y"), fso.BuildPath("", "y")  ' expect: c:\x\y c:\y c:y y
Say fso.GetBaseName("a\b.c.d"), fso.GetExtensionName("a/b.c.d"), fso.GetFileName("a\b\"), fso.GetParentFolderName("a\b/c")  ' expect: b.c d b a\b
Say fso.GetDriveName("c:\x"), fso.GetDriveName("\\s\d\x"), "[" & fso.GetDriveName("/x") & "]"  ' expect: c: \\s\d []
Say fso.GetAbsolutePathName("/a/./b/../../../c/"), fso.GetAbsolutePathName("x\..\y") = fso.GetAbsolutePathName("y")  ' expect: /c True
Say Len(fso.GetTempName), Right(fso.GetTempName, 4), fso.GetTempName = fso.GetTempName  ' expect: 12 .tmp False

' Writing and reading text
Say fso.CreateFolder("one").Name, fso.FolderExists("one/"), fso.FileExists("one"), fso.FileExists("")  ' expect: one True False False
Set f = fso.CreateTextFile("one\a.txt")
f.WriteLine "first" : f.Write "sec" : Say TypeName(f), f.Line, f.Column  ' expect: TextStream 2 4
f.WriteBlankLines 2 : f.WriteLine : f.Write "ä€" : f.Close : f.Close
Say fso.GetFile("one\a.txt").Size                            ' expect: 21
Set f = fso.OpenTextFile("one\a.txt")
Say f.Read(3), f.Column, f.AtEndOfLine, f.ReadLine           ' expect: fir 4 False st
f.Skip 3
Say f.AtEndOfLine, f.Line, "[" & f.ReadLine & "]"            ' expect: True 2 []
f.SkipLine : f.SkipLine
Say f.ReadAll, f.AtEndOfStream                               ' expect: ä€ True
f.Close
Set f = fso.OpenTextFile("one\u.txt", 2, True, -1) : f.Write "ä€x" : f.Close
Set f = fso.OpenTextFile("one\u.txt", 8, False, -1) : f.Write "y" : Set f = Nothing
Say fso.GetFile("one\u.txt").Size, fso.OpenTextFile("one\u.txt", 1, False, -1).ReadAll  ' expect: 10 ä€xy
Set f = fso.OpenTextFile("one\a.txt", 8) : f.Write "!" : f.Close
Say Right(fso.GetFile("one\a.txt").OpenAsTextStream.ReadAll, 3)  ' expect: ä€!

' Files and folders as objects
Set folder = fso.GetFolder("one")
Say TypeName(folder), folder.Name, folder = fso.GetAbsolutePathName("one"), folder.Files.Count, folder.SubFolders.Count, folder.Size  ' expect: Folder one True 2 0 32
folder.SubFolders.Add "sub" : folder.CreateTextFile("c.TXT").Close
For Each item In folder.Files : names = names & item.Name & " " : Next
Say names & folder.SubFolders("sub").ParentFolder.Name       ' expect: a.txt c.TXT u.txt one
Set item = fso.GetFile("one\c.TXT")
Say TypeName(item), item.Type, item.Attributes, item.ParentFolder.Path = folder.Path, item.Drive.Path  ' expect: File TXT File 32 True /
Say IsDate(item.DateLastModified), Abs(item.DateLastModified - Now) < 1, TypeName(item.DateCreated)  ' expect: True True Date
item.Name = "d.txt" : Say item.Name, fso.FileExists("one\d.txt"), fso.FileExists("one\c.TXT")  ' expect: d.txt True False
item.Attributes = 1 : Say item.Attributes                    ' expect: 33
Say fso.Drives.Count, fso.GetDrive("/").IsReady, fso.GetDrive("/").TotalSize > 0, fso.DriveExists("q:")  ' expect: 1 True True False
Say fso.GetSpecialFolder(2).Path = CreateObject("WScript.Shell").ExpandEnvironmentStrings("%TEMP%")  ' expect: True
Say fso.GetDrive("/").RootFolder.IsRootFolder, folder.IsRootFolder, fso.GetFolder("/").ParentFolder Is Nothing  ' expect: True False True

' Copying, moving, deleting
fso.CreateFolder "two"
fso.CopyFile "one\*.TXT", "two\" : Say fso.GetFolder("two").Files.Count  ' expect: 3
fso.CopyFolder "one", "three" : Say fso.FolderExists("three\sub"), fso.FileExists("three\u.txt")  ' expect: True True
fso.MoveFile "two\?.txt", "three\sub/" : Say fso.GetFolder("two").Files.Count, fso.GetFolder("three\sub").Files.Count  ' expect: 0 3
fso.MoveFolder "three", "two/" : Say fso.FolderExists("three"), fso.FileExists("two\three\sub\a.txt")  ' expect: False True
fso.GetFolder("two\three\sub").Move "four" : Say fso.GetFolder("four").Files.Count  ' expect: 3
fso.GetFile("four\a.txt").Copy "four\b.txt" : fso.DeleteFile "four\a.*" : Say fso.GetFolder("four").Files.Count  ' expect: 3

Sub Fails(number) : Say Err.Number = number : Err.Clear : End Sub
On Error Resume Next
fso.DeleteFolder "four" : Fails 70                           ' expect: True
fso.DeleteFolder "four", True : Say Err.Number, fso.FolderExists("four")  ' expect: 0 False
fso.DeleteFile "one\d.txt" : Fails 70                        ' expect: True
Set f = fso.OpenTextFile("one\a.txt") : f.Write "x" : Fails 54  ' expect: True
f.ReadAll : f.ReadLine : Fails 62                            ' expect: True
f.Close : f.ReadLine : Fails 52                              ' expect: True
fso.OpenTextFile "none.txt" : Fails 53                       ' expect: True
fso.OpenTextFile "one\a.txt", 3 : Fails 5                    ' expect: True
fso.OpenTextFile "no\none.txt", 2, True : Fails 76           ' expect: True
fso.CreateTextFile "one\a.txt", False : Fails 58             ' expect: True
fso.CreateFolder "one" : Fails 58                            ' expect: True
fso.CreateFolder "no\where" : Fails 76                       ' expect: True
fso.GetFile "one" : Fails 53                                 ' expect: True
fso.GetFolder "one\a.txt" : Fails 76                         ' expect: True
fso.GetDrive "q:" : Fails 68                                 ' expect: True
fso.DeleteFile "one\*.zip" : Fails 53                        ' expect: True
fso.CopyFile "one\a.txt", "one\u.txt", False : Fails 58      ' expect: True
fso.CopyFile "one\a.txt", "no\" : Fails 76                   ' expect: True
fso.MoveFile "one\a.txt", "one\u.txt" : Fails 58             ' expect: True
fso.CopyFolder "one", "one\in" : Fails 70                    ' expect: True
fso.GetFile("one\a.txt").Name = "../up" : Fails 5            ' expect: True
Set f = fso.CreateFolder("five") : fso.DeleteFolder "five" : Say f.DateCreated : Fails 76  ' expect: True
