"""The language of the texts: the one that the environment asks for, as of any program."""

import plistlib

from support import PhoneTest

TABLE = "/Applications/Preferences.app/{}.lproj/Localizable.strings"
MESSAGE = (
    "I'm Loving #Pairo, which brings ability to choose sim while dialing a number or texting from dual (e)Sim iPhones."
)


class LanguageOfTheUser(PhoneTest):
    def setUp(self):
        super().setUp()
        for language in ("de", "fr"):
            table = self.path(TABLE.format(language))
            table.parent.mkdir(parents=True)
            table.write_bytes(plistlib.dumps({MESSAGE: language}))

    def shown_in(self, **environment):
        """The share message of the root page."""
        driver = self.drive(env={**self.environment, **environment})
        message = driver.ask("hook", name="twitterMessage")["result"]
        driver.close()
        return message

    def test_of_the_locale(self):
        self.assertEqual(self.shown_in(LC_ALL="de_AT.UTF-8"), "de")
        self.assertEqual(self.shown_in(LC_ALL="it_IT.UTF-8"), MESSAGE)

    def test_of_the_list_of_languages(self):
        self.assertEqual(self.shown_in(LC_ALL="it_IT.UTF-8", LANGUAGE="es:fr:de"), "fr")

    def test_c_locale(self):
        self.assertEqual(self.shown_in(LC_ALL="C", LANGUAGE="de"), MESSAGE)
