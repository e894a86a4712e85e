"""Every text that users see can be translated, and each translation is whole: it has the texts that
the sources have now, no others, and none that is unfinished."""

from __future__ import annotations

import re
import unittest
from xml.etree import ElementTree

from desktop.project import BUILD, SOURCE

TEMPLATE = BUILD / "translations/Miravel.ts"  # collected from the sources by the build
TRANSLATIONS = sorted((SOURCE / "translations").glob("Miravel_*.ts"))
ROOTS = ("app", "ui", "service", "localchannel", "locallibrary")
# Chinese that no user sees: words in the output of the system's commands.
NOT_SHOWN = {"平均 = ", "时间="}

COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
LITERALS = re.compile(r'"(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*')
CHINESE = re.compile("[\u4e00-\u9fff]")
PLACE = re.compile(r"%(?:\d+|n)")
AGAIN = "run scripts/translations.sh and translate what is unfinished"

Texts = dict[tuple[str, str], ElementTree.Element]


def texts(file) -> Texts:
    """The translation element of each text, by its context and source."""
    found: Texts = {}
    for context in ElementTree.parse(file).getroot().iter("context"):
        for message in context.iter("message"):
            translation = message.find("translation")
            assert translation is not None
            found[context.findtext("name", ""), message.findtext("source", "")] = translation
    return found


def chinese_literals() -> dict[str, str]:
    """Every Chinese text in the code, pieces that stand side by side joined, with its file."""
    found = {}
    for root in ROOTS:
        for path in sorted((SOURCE / root).rglob("*.[ch]*")):
            code = COMMENT.sub("", path.read_text(encoding="utf-8"))
            for literals in LITERALS.findall(code):
                text = "".join(re.findall(r'"((?:[^"\\\n]|\\.)*)"', literals))
                if CHINESE.search(text):
                    found[text] = str(path.relative_to(SOURCE))
    return found


class TranslationsTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        cls.template = texts(TEMPLATE)

    def test_there_is_something_to_compare(self) -> None:
        self.assertGreater(len(self.template), 60)
        self.assertIn("Miravel_en.ts", [file.name for file in TRANSLATIONS])

    def test_every_chinese_text_of_the_code_can_be_translated(self) -> None:
        sources = {source for _, source in self.template} | NOT_SHOWN
        literals = chinese_literals()
        self.assertGreater(len(literals), 30)
        self.assertEqual([], [f"{file}: {text}" for text, file in literals.items()
                              if text not in sources])

    def test_a_translation_has_the_texts_of_the_sources(self) -> None:
        for file in TRANSLATIONS:
            with self.subTest(file.name):
                self.assertEqual(sorted(self.template), sorted(texts(file)), AGAIN)

    def test_a_translation_is_finished(self) -> None:
        for file in TRANSLATIONS:
            for (context, source), translation in texts(file).items():
                with self.subTest(f"{file.name} {context}: {source}"):
                    self.assertIsNone(translation.get("type"), AGAIN)
                    self.assertTrue(translation.text)

    def test_a_translation_keeps_places_and_blanks(self) -> None:
        for file in TRANSLATIONS:
            for (context, source), translation in texts(file).items():
                with self.subTest(f"{file.name} {context}: {source}"):
                    text = translation.text or ""
                    self.assertEqual(sorted(PLACE.findall(source)), sorted(PLACE.findall(text)))
                    self.assertEqual(source[-1] == " ", text[-1] == " ")
                    self.assertIsNone(CHINESE.search(text))
                    # It would become the mark of a key in a button or a menu.
                    self.assertNotIn("&", text)


if __name__ == "__main__":
    unittest.main()
