# prepare.sh SOURCE_DIRECTORY: fills the current directory with valid and broken files.
set -e
ln -s "$1/examples/data" data
sed 's/\\-/-/g' "$1/tools/dataengine/dataengine.1" > manual
dataengine pack data/interfaces.csv -o frame --offsets offsets
head -c 100 frame > cut-header
head -c 1000 frame > cut-payload
(cat frame; echo) > long
# Byte 664 begins the third cell of ifName.
(head -c 664 frame; printf '\301'; tail -c +666 frame) > bad-byte
: > empty
printf '\002' > version-2
printf '\241\061' > version-text
printf '\001\241n\301' > bad-schema
printf '\001\241n\001' > no-schema
# A name that clears the screen, and a value of an escape, a right-to-left mark and a stray byte.
printf '\001\245\033[2Jx\221\202\244name\244evil\244type\001\251\033[31m\342\200\256\377' > hostile
# Items that repeat, a type that is text, an index beyond the offsets, and a table without columns.
printf '\001\244odd1\225' > odd
printf '\203\244name\241a\244type\001\245index\000' >> odd
printf '\203\244name\241a\244type\001\245index\001' >> odd
printf '\203\244name\241s\244type\241x\245index\002' >> odd
printf '\203\244name\242$d\244type\001\245index\316\177\377\377\377' >> odd
printf '\203\244name\241t\244type\013\245index\004' >> odd
printf '\001\002\003\004' >> odd
# A table with an attribute between its columns and a name that repeats, and a value of 200000 levels.
printf '\001\245mixed\221\205\244name\241t\244type\013\245index\000\246column\223' > mixed
printf '\203\244name\241c\244type\001\245index\002\203\244name\241a\244type\001\245index\000' >> mixed
printf '\203\244name\241a\244type\001\245index\002' >> mixed
printf '\252attributes\221\203\244name\241b\244type\001\245index\001\221\001\002\221\003' >> mixed
(printf '\001\244deep\221\202\244name\241x\244type\001'; head -c 200000 /dev/zero|tr '\000' '\221'; printf '\300') > deep
echo '[1, 2' > half.json
echo '{}' > object.json
echo '[0, 10]' > short.json
echo '[-1]' > negative.json
echo '[5000, 1, 2, 3, 4, [5]]' > far.json
echo '[{"table": "ifTable", "column": ["speed", "gone"], "attributes": []}, "$uptimeSeconds"]' > selection.json
echo '[[]]' > bad-selection.json
echo '{"a": 1}' > bad-map.json
echo '[{"gvPath": "Device.name", "mappingType": 0, "mappingVars": [
  {"parserPath": "p", "varName": "$hostname", "varFullName": "$hostname"},
  {"parserPath": "q", "varName": "$stacked", "varFullName": "$stacked"}]}]' > documents.json
dataengine decode frame --format json > frame.json
echo '[]' > none.json
echo '[{"type":1,"name":"$x","value":7},{"type":1,"name":"$x","value":8},{"type":11,"name":"$t","column":[{"type":2,"name":"a","value":[1]},{"type":2,"name":"a","value":[2.5]},{"type":11,"name":"u"}],"hashSort":true,"hashColumns":"null","attributes":[]},{"type":1,"name":"","value":[]}]' > odd.json
cat > sheet.csv <<'END'
# Every kind, null and an empty string in a table.
unit,sheet

leaf,integer,low,-9223372036854775808
leaf,integer,high,18446744073709551615
leaf,bytes,raw,0b0a
attribute,number,ratio,2.50
table,t
text:name,boolean:up,number:load
東京と横浜と京都,,12.5
大阪と神戸と奈良,,
"a ""b"", c",true,1e3
"two
lines",,
,false,-0
END
