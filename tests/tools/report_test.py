"""The command report, as far as no browser is needed: the file, its numbers, pictures, and that it is self-contained."""

import html
import json
import re
import unittest

from program import DATA, ProgramTest


class ReportTest(ProgramTest):
    def report(self, *arguments, stdin=b"", expected=0):
        code, out, err = self.run_program("report", *arguments, stdin=stdin)
        self.assertEqual(code, expected, err)
        return out, err

    def rows(self, page):
        text = page[page.index('id="rows">\n') + 11:]
        return [line.split("\t") for line in text[:text.index("</script>")].splitlines()]

    def images(self, page):
        text = page[page.index('id="images">\n') + 13:]
        return text[:text.index("</script>")].splitlines()

    def table(self, page, name):
        """The cells of a table's body."""
        body = re.search(f'<table id="{name}">.*?<tbody>(.*?)</tbody>', page, re.DOTALL).group(1)
        return [[html.unescape(re.sub("<[^>]*>", "", cell)) for cell in re.findall(r"<t[hd][^>]*>(.*?)</t[hd]>", row)]
                for row in re.findall("<tr>(.*?)</tr>", body, re.DOTALL)]

    def test_a_small_report(self):
        lines = ('{"id":"a","text":"word","truth":"word","kind":"k"}\n'
                 '{"id":"b","text":"w0rd","truth":"word","kind":"k"}\n'
                 '{"id":"c","text":"other","truth":"other"}\n'
                 '{"id":"d","text":"wxrds","truth":"wards"}\n')
        page, err = self.report("-d", self.dictionary("word", "words", maxEdits=1), stdin=lines, expected=1)
        self.assertEqual(err, "")
        rows = self.rows(page)
        # Whether a lead is narrow is the resolver's affair; here the table and the rows have to agree on it.
        narrow = [row[1] for row in rows if "l" in row[0]]
        self.assertEqual([(row[0].replace("l", ""), row[1]) for row in rows],
                         [("ar", "a"), ("acr", "b"), ("anw", "c"), ("acw", "d")])
        self.assertEqual({len(row) for row in rows}, {10})
        kinds = self.table(page, "kinds")
        self.assertEqual([int(row.pop(4).split()[0]) for row in kinds],
                         [len({"a", "b"} & set(narrow)), len(narrow)])
        self.assertEqual(kinds, [["k", "2", "2 (100.0 %)", "1 (50.0 %)", "1 (50.0 %)", "2 (100.0 %)", "0"],
                                 ["all", "4", "3 (75.0 %)", "2 (50.0 %)", "2 (50.0 %)", "2 (50.0 %)", "1"]])
        self.assertEqual(sorted(self.table(page, "confusions")), [["0", "o", "1"], ["x", "o", "1"]])
        statuses = {row[1]: int(row[3]) for row in self.table(page, "statuses")}
        self.assertEqual((statuses["primary"], statuses["substituted"], statuses["inserted"]), (11, 2, 0))

    def test_the_page_asks_for_nothing(self):
        page, _ = self.report("-d", self.dictionary("word"), stdin="word\n")
        self.assertIn("default-src 'none'", page)
        self.assertEqual(re.findall(r"""(?:src|href)\s*=\s*["']?(?:https?:)?//""", page), [])
        self.assertNotIn("@ROWS@", page)

    def test_the_file(self):
        dictionary = self.dictionary("word")
        self.assertEqual(self.report("-d", dictionary, "-o", "report.html", stdin="word\n"), ("", ""))
        page = (self.directory / "report.html").read_text(encoding="utf-8")
        self.assertTrue(page.startswith("<!doctype html>"))
        self.assertTrue(page.rstrip().endswith("</html>"))
        # A fault leaves what was there.
        self.assert_trouble(["report", "-d", dictionary, "-o", "report.html"], "standard input:1:", stdin=b"\xff\n")
        self.assertEqual((self.directory / "report.html").read_text(encoding="utf-8"), page)
        self.assertEqual(len(list(self.directory.iterdir())), 2)
        self.assert_trouble(["report", "-d", dictionary, "-o", "nowhere/report.html"], "nowhere/report.html: cannot write",
                            stdin="word\n")

    def test_pictures(self):
        dictionary = self.dictionary("word")
        documents = sorted((DATA / "images").glob("*.hocr"))
        page, err = self.report("-d", dictionary, *documents, expected=1)
        self.assertEqual((len(self.images(page)), err), (12, ""))
        self.assertTrue(all(line.startswith("image/png,iVBORw0KGgo") for line in self.images(page)))
        rows = self.rows(page)
        self.assertEqual([row[3] for row in rows], [str(i) for i in range(12)])
        self.assertTrue(all(re.fullmatch(r"\d+ \d+ \d+ \d+", row[4]) for row in rows))
        page, _ = self.report("-d", dictionary, "--images", DATA / "images", "--jobs", "2", DATA / "readings.ndjson", expected=1)
        self.assertEqual(sum(row[3] != "" for row in self.rows(page)), 12)

    def test_what_is_no_picture_is_not_taken(self):
        self.write("secret.png", "secret words")
        self.write("readings.ndjson", json.dumps({"text": "word", "image": "secret.png"}) + "\n" +
                   json.dumps({"text": "word", "image": "nowhere.png"}) + "\n" +
                   json.dumps({"text": "word", "image": "/dev/zero"}) + "\n" +
                   json.dumps({"id": "../x", "text": "word"}) + "\n")
        page, err = self.report("-d", self.dictionary("word"), "--images", ".", "readings.ndjson")
        self.assertEqual(self.images(page), [])
        self.assertIn("3 readings name a picture", err)

    def test_an_empty_report(self):
        page, _ = self.report("-d", self.dictionary("word"), stdin="")
        self.assertEqual(self.rows(page), [])


if __name__ == "__main__":
    unittest.main()
