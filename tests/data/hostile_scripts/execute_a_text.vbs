' expect: 7
Execute "x = """ & String(12000000, "a") & """"
