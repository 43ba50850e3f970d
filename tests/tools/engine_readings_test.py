"""Readings from engines: hOCR, Tesseract's TSV, ALTO, PAGE XML; lines and words, candidates, scores, boxes, faults."""

import json
import unittest

from program import DATA, ProgramTest

XML = '<?xml version="1.0" encoding="UTF-8"?>\n'

HOCR = XML + """<html xmlns="http://www.w3.org/1999/xhtml"><body>
<div class='ocr_page' id='page_1' title='image "a; b.png"; bbox 0 0 100 50'>
<span class='ocr_line' id='line_1' title="bbox 1 2 90 20; baseline 0 0">
<span class='ocrx_word' id='word_1' title='bbox 1 2 40 20; x_wconf 91'>
<span class='ocrx_cinfo' title='x_bboxes 1 2 10 20; x_conf 93.5'>c</span>
<span class='ocrx_cinfo' id='lstm_choices_1_1_1'>
<span class='ocrx_cinfo' id='choice_1_1_1' title='x_confs 80.25'>c</span>
<span class='ocrx_cinfo' id='choice_1_1_2' title='x_confs 60'>o</span>
<span class='ocrx_cinfo' id='choice_1_1_3' title='x_confs 70'>e</span>
<span class='ocrx_cinfo' id='choice_1_1_4' title='x_confs 0'>x</span>
<span class='ocrx_cinfo' id='choice_1_1_5' title='x_confs 5'>e</span></span>
<span class='ocrx_cinfo' title='x_bboxes 11 2 20 20; x_conf 88.5'>&amp;</span>
<span class='ocrx_cinfo' id='lstm_choices_1_1_2'>
<span class='ocrx_cinfo' id='choice_1_1_6' title='x_confs 33'>a</span></span>
</span>
<span class='ocrx_word' id='word_2' title='bbox 50 2 90 20; x_wconf 45'><strong>t<em>&lt;</em></strong></span>
<span class='ocrx_word' id='word_3' title='bbox 91 2 95 20; x_wconf 3'> </span>
</span>
<span class='ocr_header' id='line_2' title="bbox 1 30 90 40">plain words</span>
</div></body></html>
"""

TSV_HEAD = "level\tpage_num\tblock_num\tpar_num\tline_num\tword_num\tleft\ttop\twidth\theight\tconf\ttext\n"
TSV = TSV_HEAD + (
    "1\t1\t0\t0\t0\t0\t0\t0\t100\t50\t-1\t\n"
    "4\t1\t1\t1\t1\t0\t1\t2\t89\t18\t-1\t\n"
    "5\t1\t1\t1\t1\t1\t1\t2\t39\t18\t91.5\tcat\n"
    "5\t1\t1\t1\t1\t2\t50\t3\t40\t18\t45\tsat\n"
    "5\t1\t1\t1\t1\t3\t95\t3\t1\t18\t95\t \n"
    "4\t1\t1\t1\t2\t0\t1\t30\t89\t18\t-1\t\n"
    "5\t1\t1\t1\t2\t1\t1\t30\t39\t18\t12\tübel\n")

ALTO = XML + """<alto xmlns="http://www.loc.gov/standards/alto/ns-v4#">
<Description><MeasurementUnit>pixel</MeasurementUnit>
<sourceImageInformation><fileName>page.png</fileName></sourceImageInformation></Description>
<Layout><Page ID="p"><PrintSpace><TextBlock ID="b">
<TextLine ID="l1" HPOS="1" VPOS="2" WIDTH="89" HEIGHT="18">
<String ID="s1" CONTENT="c&amp;" WC='0.91' HPOS="1" VPOS="2" WIDTH="39.5" HEIGHT="18">
<Glyph ID="g1" CONTENT="c" GC="0.801" HPOS="1" VPOS="2" WIDTH="9" HEIGHT="18">
<Variant CONTENT="o" VC="0.6"/><Variant CONTENT="e" VC="0.7"/><Variant CONTENT="rn" VC="0.9"/></Glyph>
<Glyph ID="g2" CONTENT="&amp;" GC="0.885"/></String><SP WIDTH="10"/>
<String ID="s2" CONTENT='t"' WC="0.45"/></TextLine>
<TextLine ID="l2"><String ID="s3" CONTENT="word"/></TextLine>
</TextBlock></PrintSpace></Page></Layout></alto>
"""

PAGE = XML + """<pc:PcGts xmlns:pc="http://schema.primaresearch.org/PAGE/gts/pagecontent/2019-07-15">
<pc:Page imageFilename="scans/page.png" imageWidth="100" imageHeight="50">
<pc:TextRegion id="r"><pc:Coords points="0,0 100,0 100,50 0,50"/>
<pc:TextLine id="l1"><pc:Coords points="90,2 1,20 1,2"/>
<pc:Word id="w1"><pc:Coords points="1,2 40,20"/>
<pc:Glyph id="g1"><pc:Coords points="1,2 10,20"/>
<pc:TextEquiv index="1" conf="0.6"><pc:Unicode>o</pc:Unicode></pc:TextEquiv>
<pc:TextEquiv index="0" conf="0.801"><pc:Unicode>c</pc:Unicode></pc:TextEquiv></pc:Glyph>
<pc:Glyph id="g2"><pc:Coords points="11,2 20,20"/>
<pc:TextEquiv conf="0.885"><pc:Unicode>a</pc:Unicode></pc:TextEquiv></pc:Glyph>
<pc:TextEquiv conf="0.9"><pc:Unicode>ca</pc:Unicode></pc:TextEquiv></pc:Word>
<pc:Word id="w2"><pc:Coords points="50,2 90,20"/>
<pc:TextEquiv index="0" conf="0.5"><pc:Unicode>to</pc:Unicode></pc:TextEquiv>
<pc:TextEquiv index="1" conf="0.4"><pc:Unicode>te</pc:Unicode></pc:TextEquiv></pc:Word>
<pc:TextEquiv><pc:Unicode>ca to</pc:Unicode></pc:TextEquiv></pc:TextLine>
<pc:TextLine id="l2"><pc:Coords points="1,30 90,40"/>
<pc:TextEquiv conf="0.25"><pc:Unicode>plain words</pc:Unicode></pc:TextEquiv></pc:TextLine>
<pc:TextEquiv><pc:Unicode>ca to
plain words</pc:Unicode></pc:TextEquiv></pc:TextRegion>
</pc:Page></pc:PcGts>
"""


class EngineReadingsTest(ProgramTest):
    def convert(self, *arguments, stdin=b"", expected=0):
        code, out, err = self.run_program("convert", *arguments, stdin=stdin)
        self.assertEqual(code, expected, err)
        return [json.loads(line) for line in out.splitlines()]

    def texts(self, *arguments, stdin=b""):
        return [reading["text"] for reading in self.convert(*arguments, stdin=stdin)]

    def test_hocr_lines(self):
        first, second = self.convert(stdin=HOCR)
        self.assertEqual((first["id"], first["text"], first["box"]), ("line_1", "c& t<", [1, 2, 90, 20]))
        self.assertEqual(first["positions"], [[["c", 80.25], ["e", 70.0], ["o", 60.0]], [["&", 88.5], ["a", 33.0]],
                                              [[" ", 45.0]], [["t", 45.0]], [["<", 45.0]]])
        self.assertEqual(first["boxes"], [[1, 2, 10, 20], [11, 2, 20, 20], None, None, None])
        self.assertEqual(first["image"], "a; b.png")
        self.assertEqual((second["id"], second["text"]), ("line_2", "plain words"))
        self.assertNotIn("boxes", second)

    def test_hocr_words(self):
        words = self.convert("--unit", "word", stdin=HOCR)
        self.assertEqual([(word["id"], word["text"]) for word in words],
                         [("word_1", "c&"), ("word_2", "t<"), (None, "plain"), (None, "words")])
        self.assertEqual(words[1]["box"], [50, 2, 90, 20])

    def test_choices_without_character_boxes(self):
        word = ("<html><body><span class='ocr_line' title='bbox 0 0 1 1'><span class='ocrx_word' title='x_wconf 77'>ab"
                "<span class='ocrx_cinfo' id='lstm_choices_1_1_1'><span title='x_confs 90'>a</span>"
                "<span title='x_confs 20'>o</span></span>"
                "<span class='ocrx_cinfo' id='lstm_choices_1_1_2'><span title='x_confs 80'>b</span>"
                "<span title='x_confs 30'>h</span></span></span></span></body></html>")
        reading, = self.convert(stdin=word)
        self.assertEqual(reading["positions"], [[["a", 90.0], ["o", 20.0]], [["b", 80.0], ["h", 30.0]]])
        dictionary = self.dictionary("oh")
        _, out, err = self.run_program("run", "-d", dictionary, "--to", "hocr", stdin=word)
        self.assertEqual(out, word.replace(">ab<", ">oh<"), err)

    def test_the_shipped_documents_give_the_shipped_readings(self):
        with open(DATA / "readings.ndjson", encoding="utf-8") as file:
            expected = {reading["id"]: reading for reading in map(json.loads, file)}
        documents = sorted((DATA / "images").glob("*.hocr"))
        self.assertEqual(len(documents), 12)
        for document in documents:
            with self.subTest(document=document.name):
                reading, = self.convert(document)
                rounded = [[[character, round(score, 1)] for character, score in position]
                           for position in reading["positions"]]
                self.assertEqual(rounded, expected[document.stem]["positions"])
                self.assertEqual(reading["text"], expected[document.stem]["text"])
                self.assertEqual(reading["image"], str(DATA / "images" / f"{document.stem}.png"))
                for box, (character, _) in zip(reading["boxes"], (position[0] for position in reading["positions"])):
                    self.assertEqual(box is None, character == " ")

    def test_tsv(self):
        first, second = self.convert(stdin=TSV)
        self.assertEqual((first["id"], first["text"], first["box"]), ("1.1.1.1", "cat sat", [1, 2, 90, 21]))
        self.assertEqual(first["positions"][2:5], [[["t", 91.5]], [[" ", 45.0]], [["s", 45.0]]])
        self.assertEqual((second["id"], second["text"]), ("1.1.1.2", "übel"))
        words = self.convert("--unit", "word", "--from", "tsv", stdin=TSV.replace("\n", "\r\n"))
        self.assertEqual([(word["id"], word["text"], word["box"]) for word in words],
                         [("1.1.1.1.1", "cat", [1, 2, 40, 20]), ("1.1.1.1.2", "sat", [50, 3, 90, 21]),
                          ("1.1.1.2.1", "übel", [1, 30, 40, 48])])

    def test_alto(self):
        first, second = self.convert(stdin=ALTO)
        self.assertEqual((first["id"], first["text"], first["box"]), ("l1", 'c& t"', [1, 2, 90, 20]))
        self.assertEqual(first["positions"], [[["c", 80.1], ["e", 70.0], ["o", 60.0]], [["&", 88.5]], [[" ", 45.0]],
                                              [["t", 45.0]], [['"', 45.0]]])
        self.assertEqual(first["boxes"][:2], [[1, 2, 10, 20], None])
        self.assertEqual(first["image"], "page.png")
        self.assertEqual(second["text"], "word")
        words = self.convert("--unit", "word", stdin=ALTO)
        self.assertEqual([(word["id"], word["text"]) for word in words], [("s1", "c&"), ("s2", 't"'), ("s3", "word")])
        self.assertEqual(words[0]["box"], [1, 2, 40.5, 20])

    def test_page(self):
        self.write("page.xml", PAGE)
        first, second = self.convert("page.xml")
        self.assertEqual((first["id"], first["text"], first["box"]), ("l1", "ca to", [1, 2, 90, 20]))
        self.assertEqual(first["positions"], [[["c", 80.1], ["o", 60.0]], [["a", 88.5]], [[" ", 50.0]], [["t", 50.0]],
                                              [["o", 50.0], ["e", 40.0]]])
        self.assertEqual(first["image"], "scans/page.png")
        self.assertEqual((second["text"], second["positions"][0]), ("plain words", [["p", 25.0]]))
        self.assertEqual(self.texts("--unit", "word", "page.xml"), ["ca", "to", "plain", "words"])

    def test_formats_in_one_run(self):
        self.write("a.txt", "<no document\n")
        self.write("b.hocr", HOCR)
        self.write("c.tsv", TSV)
        self.write("d.xml", "\ufeff" + ALTO)
        self.write("e.ndjson", '{"text":"x"}\n')
        self.write("f.txt", "")
        self.assertEqual(self.texts("a.txt", "b.hocr", "c.tsv", "d.xml", "e.ndjson", "f.txt"),
                         ["<no document", "c& t<", "plain words", "cat sat", "übel", 'c& t"', "word", "x"])
        self.assertEqual(self.texts("--from", "text", "a.txt", "c.tsv")[:2], ["<no document", TSV_HEAD[:-1]])

    def test_what_was_converted_is_read_again(self):
        for document in (HOCR, TSV, ALTO, PAGE):
            _, out, _ = self.run_program("convert", stdin=document)
            _, again, err = self.run_program("convert", stdin=out)
            strip = lambda text: [{k: v for k, v in json.loads(line).items() if k != "source"}
                                  for line in text.splitlines()]
            self.assertEqual(strip(again), strip(out), err)

    def test_convert_to_text(self):
        code, out, err = self.run_program("convert", "--to", "text", stdin=HOCR)
        self.assertEqual((code, out), (0, "c& t<\nplain words\n"), err)
        self.assert_trouble(["convert", "--to", "text"], ":1: the reading holds a line end", stdin='{"text":"a\\nb"}\n')

    def test_run_keeps_boxes(self):
        dictionary = self.dictionary("cat sat", "übel")
        for answer in self.run_json("-d", dictionary, "--jobs", "2", stdin=TSV):
            self.assertEqual(len(answer["results"]), 1)
            self.assertEqual(len(answer["box"]), 4)


class FaultsTest(ProgramTest):
    def assert_refused(self, content, *parts, arguments=()):
        content = content if isinstance(content, bytes) else content.encode()
        self.write("document", content)
        self.assert_trouble(["run", "--json", "-d", self.dictionary("word"), *arguments, "document"], *parts)

    def test_broken_xml(self):
        self.assert_refused(XML + "<html><body>\n<p>", "document:", "not well-formed XML")
        self.assert_refused(XML + "<html>\n<p></html>", "document:3:", "not well-formed XML")
        self.assert_refused(HOCR[:700], "document:", "not well-formed XML")
        self.assert_refused(XML, "not well-formed XML")
        self.assert_refused("<html", "not well-formed XML")

    def test_another_document(self):
        self.assert_refused(XML + "<svg/>", 'document:2:2: the document\'s element is "svg"', '"html" (hOCR)')

    def test_entities(self):
        bomb = XML + ('<!DOCTYPE html [\n<!ENTITY a "aaaaaaaaaa">\n' +
                      "".join(f'<!ENTITY {chr(98 + i)} "{("&" + chr(97 + i) + ";") * 10}">\n' for i in range(9)) +
                      "]>\n<html><p>&j;</p></html>")
        self.assert_refused(bomb, "document:2:", "declares entities")
        self.assert_refused(XML + '<!DOCTYPE html [<!ENTITY x SYSTEM "file:///etc/passwd">]><html>&x;</html>',
                            "document:2:", "declares entities")
        self.assert_refused("<html>\n<p>&nbsp;</p></html>", 'document:2:4: "&nbsp', "no entity of XML's own")
        self.assert_refused("<html><p>a & b</p></html>", "no entity of XML's own")
        self.assertEqual(self.run_program("convert", stdin=HOCR.replace("<html", '<!DOCTYPE html PUBLIC "[x]" "y"><html'))[0], 0)

    def test_depth(self):
        deep = "<html>" + "<div>" * 100000 + "</div>" * 100000 + "</html>"
        self.assert_refused(deep, "document:1:", "too deep", "256")
        fine = "<html>" + "<div>" * 200 + HOCR[HOCR.index("<div"):HOCR.index("</body>")] + "</div>" * 200 + "</html>"
        code, out, err = self.run_program("convert", stdin=fine)
        self.assertEqual((code, len(out.splitlines())), (0, 2), err)

    def test_encodings(self):
        self.assert_refused(HOCR.encode("utf-16"), "document:1: byte 1", "UTF-16", "expected UTF-8")
        self.assert_refused(HOCR.replace("plain", "plän").encode("latin-1"), "document:20: byte ", "is not UTF-8")
        self.assert_refused(HOCR.replace("plain", "pl\0in"), "U+0000")
        self.assert_refused(HOCR.replace("plain", "&#xD800;"), "is not UTF-8")
        self.assert_refused(HOCR.replace("plain", "&#xF801;"), "U+F801 is reserved")
        self.assert_refused(TSV.replace("übel", "\udcff").encode("utf-8", "surrogateescape"), "document:8: byte ", "UTF-8")

    def test_numbers(self):
        self.assert_refused(HOCR.replace("x_conf 93.5", "x_conf much"), "document:6:2", 'found "much"; expected x_conf')
        self.assert_refused(HOCR.replace("x_wconf 45", "x_wconf nan"), 'found "nan"; expected x_wconf')
        self.assert_refused(HOCR.replace("bbox 1 2 40 20", "bbox 1 2 40"), "expected bbox with four numbers")
        self.assert_refused(HOCR.replace("x_conf 88.5", "x_conf 1e300"), "expected a score")
        self.assert_refused(ALTO.replace("0.801", "80.1"), 'found "80.1"; expected GC, a number from 0 to 1')
        self.assert_refused(ALTO.replace("39.5", "wide"), 'found "wide"; expected WIDTH')
        self.assert_refused(PAGE.replace("1,2 10,20", "1 2"), 'expected points as "x,y x,y')
        self.assert_refused(PAGE.replace('index="1"', 'index="one"'), 'found "one"; expected index')
        self.assert_refused(TSV.replace("91.5", "sure"), 'document:4: found "sure"; expected conf')
        self.assert_refused(TSV.replace("\t39\t", "\t"), "document:4: expected 12 fields")
        self.assert_refused(TSV.replace("\tcat", "\tcat\tx"), "document:4: expected 12 fields")
        self.assert_refused("word\n", "document:1: expected the head of a table", arguments=["--from", "tsv"])

    def test_missing_boxes_and_scores(self):
        bare = "<html><body><span class='ocr_line'><span class='ocrx_word'>word</span></span></body></html>"
        for document in (bare, ALTO.replace('HPOS="1" ', ""), PAGE.replace("<pc:Coords points", "<pc:Coords x")):
            code, out, err = self.run_program("convert", stdin=document)
            self.assertEqual(code, 0, err)
            self.assertNotIn("box", json.loads(out.splitlines()[0]))

    def test_documents_without_lines(self):
        for document in ("<html/>", "<alto/>", "<PcGts/>", TSV_HEAD, "<html><p>text</p></html>"):
            self.assertEqual(self.run_program("convert", stdin=document), (0, "", ""))

    def test_a_fault_behind_good_documents(self):
        self.write("good.hocr", HOCR)
        self.write("bad.hocr", HOCR[:900])
        code, out, err = self.run_program("run", "--json", "-d", self.dictionary("word"), "--jobs", "3", "good.hocr",
                                          "bad.hocr", "good.hocr")
        self.assertEqual(code, 2)
        self.assertIn("bad.hocr:", err)
        self.assertEqual(len(out.splitlines()), 2)


class CorrectedDocumentsTest(ProgramTest):
    def corrected(self, document, words, *arguments, **parameters):
        code, out, err = self.run_program("run", "-d", self.dictionary(*words, **parameters), *arguments, stdin=document)
        self.assertIn(code, (0, 1), err)
        return out

    def replaced(self, document, *pairs):
        for old, new in pairs:
            self.assertEqual(document.count(old), 1, old)
            document = document.replace(old, new)
        return document

    def test_nothing_to_correct(self):
        for form, document in (("hocr", HOCR), ("alto", ALTO), ("page", PAGE)):
            for unit in ("line", "word"):
                for text in (document, "\ufeff" + document, document.replace("\n", "\r\n"), document + "<!-- & -->"):
                    self.assertEqual(self.corrected(text, ["nothing"], "--to", form, "--unit", unit), text.replace("\r\n", "\n")
                                     if "\r" not in text else text)

    def test_hocr(self):
        out = self.corrected(HOCR, ["ea", "t>", "plane", "words"], "--to", "hocr", "--unit", "word", maxEdits=1)
        self.assertEqual(out, self.replaced(HOCR, ("x_conf 93.5'>c<", "x_conf 93.5'>e<"),
                                            ("x_conf 88.5'>&amp;<", "x_conf 88.5'>a<"), ("<em>&lt;</em>", "<em></em>"),
                                            ("<strong>t", "<strong>t&gt;")))

    def test_hocr_lines(self):
        out = self.corrected(HOCR, ["oat t<", "plane words"], "--to", "hocr", maxEdits=1)
        self.assertEqual(out, self.replaced(HOCR, ("x_conf 93.5'>c<", "x_conf 93.5'>o<"),
                                            ("x_conf 88.5'>&amp;<", "x_conf 88.5'>at<")))

    def test_a_space_that_goes_joins_words(self):
        out = self.corrected(HOCR, ["c&t<"], "--to", "hocr", maxEdits=1)
        self.assertEqual(out, self.replaced(HOCR, ("x_conf 88.5'>&amp;<", "x_conf 88.5'>&amp;t&lt;<"), ("<em>&lt;</em>", "<em></em>"),
                                            ("<strong>t", "<strong>")))

    def test_alto(self):
        out = self.corrected(ALTO, ["ea", "word"], "--to", "alto", "--unit", "word", maxEdits=1)
        self.assertEqual(out, self.replaced(ALTO, ('CONTENT="c&amp;"', 'CONTENT="ea"'), ('CONTENT="c" GC', 'CONTENT="e" GC'),
                                            ('CONTENT="&amp;" GC', 'CONTENT="a" GC')))

    def test_page(self):
        out = self.corrected(PAGE, ["oat to", "plain word"], "--to", "page", maxEdits=1)
        self.assertEqual(out, self.replaced(
            PAGE, ("<pc:Unicode>c</pc:Unicode>", "<pc:Unicode>o</pc:Unicode>"),
            ("<pc:Unicode>a</pc:Unicode>", "<pc:Unicode>at</pc:Unicode>"),
            ("<pc:Unicode>ca</pc:Unicode>", "<pc:Unicode>oat</pc:Unicode>"),
            ("<pc:Unicode>ca to</pc:Unicode>", "<pc:Unicode>oat to</pc:Unicode>"),
            ("<pc:Unicode>ca to\nplain words</pc:Unicode>", "<pc:Unicode>oat to\nplain word</pc:Unicode>"),
            ("<pc:Unicode>plain words</pc:Unicode>", "<pc:Unicode>plain word</pc:Unicode>")))

    def test_what_a_window_ignores_stays(self):
        out = self.corrected(PAGE, ["plain"], "--to", "page", window=True)
        self.assertEqual(out, PAGE)

    def test_files(self):
        self.write("a.hocr", HOCR)
        self.write("b.hocr", HOCR)
        (self.directory / "out").mkdir()
        dictionary = self.dictionary("plane words", maxEdits=2)
        code, out, err = self.run_program("run", "-d", dictionary, "--to", "hocr", "-o", "out", "-j", "2", "a.hocr", "b.hocr")
        self.assertEqual((code, out), (1, ""), err)
        for name in ("a.hocr", "b.hocr"):
            self.assertIn("plane words", (self.directory / "out" / name).read_text(encoding="utf-8"))
        self.assertEqual(self.run_program("run", "-d", dictionary, "--to", "hocr", "-o", "c.hocr", "a.hocr")[0], 1)
        self.assertIn("plane words", (self.directory / "c.hocr").read_text(encoding="utf-8"))
        self.assertEqual(sorted(path.name for path in self.directory.iterdir()),
                         ["a.hocr", "b.hocr", "c.hocr", "dictionary.json", "out"])

    def test_faults(self):
        self.write("a.hocr", HOCR)
        self.write("b.hocr", HOCR[:800])
        self.write("t.txt", "text\n")
        (self.directory / "out").mkdir()
        dictionary = self.dictionary("word")
        run = ["run", "-d", dictionary, "--to"]
        self.assert_trouble([*run, "alto", "a.hocr"], "a.hocr: the document is hocr", "expected alto")
        self.assert_trouble([*run, "hocr", "t.txt"], "t.txt:1: the reading is of no document")
        self.assert_trouble([*run, "hocr", "a.hocr", "b.hocr"], "several documents", "directory")
        self.assert_trouble([*run, "hocr", "-o", "a.hocr", "a.hocr"], "would overwrite")
        self.assert_trouble([*run, "hocr", "-o", "nowhere/x", "a.hocr"], "nowhere/x: cannot write")
        self.assert_trouble([*run, "hocr", "--skip", "1", "a.hocr"], "--skip")
        self.assert_trouble([*run, "hocr", "-o", "out", "a.hocr", "./a.hocr"], "same file")
        self.assert_trouble([*run, "hocr", "-o", "out", "a.hocr", "b.hocr"], "b.hocr:")
        self.assertEqual([path.name for path in (self.directory / "out").iterdir()], ["a.hocr"])
        self.assert_trouble([*run, "hocr", "-o", "x.hocr", "b.hocr"], "b.hocr:")
        self.assertFalse((self.directory / "x.hocr").exists())


if __name__ == "__main__":
    unittest.main()
