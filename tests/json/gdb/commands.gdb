set startup-with-shell off
break stop
run
print json
up
print frozen
print changed
print failed
print unknown
print view
print member
python
for name in ["deep", "wide"]:
    text = gdb.parse_and_eval(name).format_string()
    print("$", name, text[:7], len(text), text[-4:])
end
