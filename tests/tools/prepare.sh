# prepare.sh SOURCE_DIRECTORY: fills the current directory with valid and broken files.
set -e
ln -s "$1/examples/data" data
cp "$1/tools/dataengine/completion.bash" .
cp "$1/README.md" readme
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
sed 's/0/-1/' offsets > negative.json
sed 's/0/5000/' offsets > far.json
echo '[{"table": "ifTable", "column": ["speed", "gone"], "attributes": []}, "$uptimeSeconds"]' > selection.json
echo '[[]]' > bad-selection.json
echo '{"a": 1}' > bad-map.json
echo '[{"gvPath": "Device.name", "mappingType": 0, "mappingVars": [
  {"parserPath": "p", "varName": "$hostname", "varFullName": "$hostname"},
  {"parserPath": "q", "varName": "$stacked", "varFullName": "$stacked"}]}]' > documents.json
dataengine decode frame --format json > frame.json
# The files of the examples in the manual, the help and the README.
cp data/interfaces.csv interfaces.csv
cp frame interfaces.frame
cp offsets interfaces.offsets
cp data/edge-r1-show-interfaces.txt version.txt
dataengine decode frame --format csv > rows.csv
dataengine record d cmd n offsets --format bson > record.bson 2> /dev/null || true
# Every kind of value, in narrowest forms: a NaN with bits of its own, a bin of JSON text, a str that is not UTF-8, maps
# with keys that are not plain strings; and after them a byte that begins no value.
printf '\001\244odd2\221\203\244name\241v\244type\001\245index\000\234\300\303\313\100\011\041\373\124\104\055\030' > kinds
printf '\312\077\300\000\000\313\177\370\000\000\000\000\000\001\313\377\360\000\000\000\000\000\000' >> kinds
printf '\304\002a"\304\001\377\241\377\325\005\000\377' >> kinds
printf '\204\241a\001\002\003\242$a\004\221\005\006\247\033\177\302\233\342\200\256' >> kinds
(cat kinds; printf '\301') > tail
# Values that documents make null, and one that they do not.
printf '\001\245nulls\226' > nulls
for i in 0 1 2 3 4 5; do printf '\203\244name\241'"$i"'\244type\001\245index'"\\00$i"; done >> nulls
printf '\300\312\177\300\000\000\221\324\001\000\201\001\002\304\001"\304\002\134n' >> nulls
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
# Cells that a spreadsheet would run, and cells that must not reach a terminal.
printf 'unit,f\ntable,t\ntext:=a,integer:n\n=1+1,-5\n@x,6\n"+1,""2""",\nplain,7\n' | dataengine pack - -o formulas
printf 'unit,u\ntable,t\ntext:a\033b\n\033[31m\177\302\233\342\200\256\377\n' | dataengine pack - -o hostile-table
printf 'unit,u\nleaf,text,only,x\n' | dataengine pack - -o empty-unit
dataengine pack none.json -o none
# A column of 60000 rows next to 300 that are empty.
(printf '[{"type":11,"name":"t","column":['; for i in $(seq 300); do printf '{"type":1,"name":"c%d","value":[]},' $i; done
 printf '{"type":1,"name":"d","value":[1'; head -c 60000 /dev/zero|sed 's/\x00/,1/g'; printf ']}],"hashSort":true,"hashColumns":"null","attributes":[]}]') > ragged.json
dataengine pack ragged.json -o ragged
# BSON of every type, another document, and one that is cut off.
(
    printf '\251\000\000\000\007\137id\000\000\001\002\003\004\005\006\007\010\011\012\013\001d\000\000\000\000\000\000'
    printf '\000\004\100\002s\000\006\000\000\000a\042\342\200\256\000\003o\000\014\000\000\000\020i\000\377\377\377\377'
    printf '\000\004a\000\014\000\000\000\012\060\000\010\061\000\001\000\005b\000\002\000\000\000\004\000\377\011t\000'
    printf '\005\000\000\000\000\000\000\000\016y\000\002\000\000\000x\000\015c\000\004\000\000\000f\050\051\000\021ts'
    printf '\000\001\000\000\000\002\000\000\000\022l\000\000\000\000\000\000\001\000\000\377m\000\177M\000\013r\000a'
    printf '\000i\000\003e\000\005\000\000\000\000\004z\000\005\000\000\000\000\000\014\000\000\000\020n\000\007\000\000'
    printf '\000\000\251\000\000\000\007\137id\000\000\001\002\003\004\005\006\007\010\011\012\013\001d\000\000\000\000'
    printf '\000\000\000\004\100\002s\000\006\000\000\000a\042\342\200\256\000\003o\000\014\000\000\000\020i\000\377\377'
    printf '\377\377\000\004a\000\014\000\000\000\012\060\000\010\061\000\001\000\005b\000\002\000\000\000\004\000\377'
    printf '\011t\000\005\000\000\000\000\000\000\000\016y\000\002\000\000\000x\000\015c\000\004\000\000\000f\050\051'
    printf '\000\021ts\000\001\000\000\000\002\000\000\000\022l\000\000\000\000\000\000\001\000\000\377m\000\177M\000'
    printf '\013r\000a\000i\000\003e\000\005\000\000\000\000\004z\000\005\000\000\040\000\000'
) > types.bson
# A table with a long name and 4000 columns, and 1000 tables whose columns have an index of 100000.
(printf '\001\241u\221\204\244name\333\000\001\206\240'; head -c 100000 /dev/zero|tr '\000' T; printf '\244type\013\245index\000\246column\334\017\240'
 LC_ALL=C awk 'BEGIN { for (i = 0; i < 4000; i++) printf "\203\244name\241c\244type\001\245index\315%c%c", i / 256, i % 256 }'
 head -c 4000 /dev/zero) > long-name
(printf '\001\241u\334\003\350'
 LC_ALL=C awk 'BEGIN { for (i = 0; i < 1000; i++)
     printf "\204\244name\241t\244type\013\245index\315%c%c\246column\221\203\244name\241c\244type\001\245index\316%c%c%c%c", i / 256, i % 256, 0, 1, 134, 160 }'
 head -c 150000 /dev/zero) > far-index
# Two tables with a column shorter than the other, in the first one.
for cells in 1 1,5; do echo '[{"type":11,"name":"t","column":[{"type":1,"name":"a","value":[1,2]},{"type":1,"name":"b","value":['$cells']}],"hashSort":true,"hashColumns":"null","attributes":[]}]'|dataengine pack - --name u -o short-$cells; done
echo '{"version":1,"name":"n","schema":[{"name":"v","type":1,"index":0}],"payload":[{"$a22461":1}]}'|dataengine pack - -o dollar
# Names with dots, and a zero byte in a cell.
table() { echo '{"type":11,"name":"'$1'","column":[{"type":1,"name":"'$2'","value":['$3']},{"type":1,"name":"x.y","value":["p\u0000q"]}],"hashSort":true,"hashColumns":"null","attributes":[]}'; }
echo "[$(table a b 2),{\"type\":1,\"name\":\"a.b\",\"value\":1},$(table c.d e 3)]" > dots.json
dataengine pack dots.json -o dots
