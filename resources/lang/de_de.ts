<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>QuillmarkMainWindow</name>
    <message>
        <source>Quillmark</source>
        <translation>Quillmark</translation>
    </message>
</context>
</TS>
