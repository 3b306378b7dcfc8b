Dim sh, env : Set sh = CreateObject("WScript.Shell") : Set env = sh.Environment("PROCESS")
env("tessaloom_test") = "50"
Say sh.ExpandEnvironmentStrings("%Tessaloom_Test%% of %none% %"), env("TESSALOOM_TEST")  ' expect: 50% of %none% % 50
env.Remove "TESSALOOM_TEST"
Say "[" & env("tessaloom_test") & "]", env.Count > 0, Len(env("USERNAME")) > 0  ' expect: [] True True
Say Right(sh.SpecialFolders("desktop"), 7), sh.SpecialFolders("x") = "", sh.SpecialFolders.Count > 10  ' expect: Desktop True True
Say sh.CurrentDirectory = CreateObject("Scripting.FileSystemObject").GetAbsolutePathName(".")  ' expect: True
On Error Resume Next
sh.CurrentDirectory = "/" : Say Err.Number                   ' expect: 70
Err.Clear : sh.Run "ls" : Say Err.Number                     ' expect: 438
Err.Clear : CreateObject "Excel.Application" : Say Err.Number  ' expect: 429
Err.Clear : Say CreateObject("vbscript.regexp").Test(""), CreateObject("MSXML2.ServerXMLHTTP.6.0").readyState, Err.Number  ' expect: True 0 0
