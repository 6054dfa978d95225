"""`tandem check`: a line for each layout rule that a page definition breaks, and none for the product's own."""

import plistlib

from support import BUNDLE, FOOTER_ITEM, PhoneTest, group_item, link_item, page_definition


class LayoutCheck(PhoneTest):
    def assert_faults(self, *lines):
        out = "".join(f"{line}\n" for line in lines)
        self.assertEqual(self.run_tandem("check"), (1 if lines else 0, out, ""))

    def assert_faults_of(self, name, change, *lines):
        """The faults after a change of the definition; the product's own is back afterwards."""
        definition = page_definition(name)
        change(definition)
        self.write_page(name, definition)
        self.assert_faults(*(f"{name}.plist: {line}" for line in lines))
        self.write_page(name, page_definition(name))


def changed(index, **entries):
    def change(definition):
        definition["items"][index].update(entries)

    return change


def without(index, key=None):
    def change(definition):
        del (definition["items"] if key is None else definition["items"][index])[index if key is None else key]

    return change


def moved(index, to):
    def change(definition):
        definition["items"].insert(to, definition["items"].pop(index))

    return change


def replaced(**entries):
    def change(definition):
        definition.update(entries)

    return change


class DefinitionsOfTheProduct(LayoutCheck):
    def test_clean(self):
        self.assert_faults()
        self.assertEqual(self.run_tandem("--no-provision", "check"), (0, "", ""))
        self.place_bundle()
        self.assert_faults()

    def test_written_by_the_build_in_the_form_that_is_read_fastest(self):
        for name in ("Root", "Calls", "Messages", "Misc", "Info"):
            self.assertEqual((BUNDLE / f"{name}.plist").read_bytes()[:8], b"bplist00")

    def test_faults_in_either_form(self):
        calls = page_definition("Calls")
        changed(0, cell="PSNoCell")(calls)
        for form in (plistlib.FMT_XML, plistlib.FMT_BINARY):
            (self.place_bundle() / "Misc.plist").write_bytes(plistlib.dumps(page_definition("Misc"), fmt=form))
            (self.bundle / "Calls.plist").write_bytes(plistlib.dumps(calls, fmt=form))
            self.assert_faults(
                'Calls.plist: row 0 (TandemEnabledCalls): unknown cell "PSNoCell"',
                'Calls.plist: row 0 (TandemEnabledCalls): must be a PSSwitchCell',
            )


class FilesAndItems(LayoutCheck):
    def test_missing_file(self):
        for name in ("Root", "Calls", "Messages", "Misc"):
            file = self.place_bundle() / f"{name}.plist"
            content = file.read_bytes()
            file.unlink()
            self.assert_faults(f"{name}.plist: is missing or no property list with a dictionary")
            file.write_bytes(content)

    def test_file_that_is_no_property_list(self):
        file = self.place_bundle() / "Calls.plist"
        whole = file.read_bytes()
        for content in (b"", b"nonsense", whole[: len(whole) // 2], b"<plist><array/></plist>", b"\0" * 1000):
            file.write_bytes(content)
            self.assert_faults("Calls.plist: is missing or no property list with a dictionary")
        file.unlink()
        file.mkdir()
        self.assert_faults("Calls.plist: is missing or no property list with a dictionary")

    def test_all_files_missing(self):
        for file in self.place_bundle().glob("*.plist"):
            if file.name != "Info.plist":
                file.unlink()
        self.assert_faults(
            *(
                f"{name}.plist: is missing or no property list with a dictionary"
                for name in ("Root", "Calls", "Messages", "Misc")
            )
        )

    def test_items_that_are_no_list(self):
        for items in ("text", 5, {}, True):
            self.assert_faults_of("Calls", replaced(items=items), '"items" must be an array')
        self.assert_faults_of("Calls", lambda definition: definition.pop("items"), '"items" must be an array')

    def test_item_that_is_no_dictionary(self):
        def change(definition):
            definition["items"][5] = "text"
            definition["items"][6] = []

        self.assert_faults_of("Calls", change, "row 5: must be a dictionary", "row 6: must be a dictionary")

    def test_title_and_version(self):
        self.assert_faults_of("Calls", lambda definition: definition.pop("title"), '"title" must be a text')
        self.assert_faults_of("Misc", replaced(title=5), '"title" must be a text')
        self.assert_faults_of("Root", lambda definition: definition.pop("Version"), '"Version" must be a text')
        self.assert_faults_of("Root", replaced(Version=1.0), '"Version" must be a text')


class NamesInItems(LayoutCheck):
    APP = "row 5 (TandemCallsApp-org.gnome.Calls)"

    def test_duplicate_identifier(self):
        self.assert_faults_of("Calls", changed(5, id="AppsGroup"), "row 5 (AppsGroup): the identifier is used twice")

    def test_unknown_cell(self):
        self.assert_faults_of("Calls", changed(5, cell="Nope"), f'{self.APP}: unknown cell "Nope"')
        self.assert_faults_of("Calls", changed(5, cell="psswitchcell"), f'{self.APP}: unknown cell "psswitchcell"')
        self.assert_faults_of("Calls", changed(5, cell=5), f'{self.APP}: unknown cell ""')
        self.assert_faults_of("Calls", without(5, "cell"), f'{self.APP}: unknown cell ""')

    def test_unknown_class(self):
        self.assert_faults_of(
            "Calls", changed(5, cellClass="Nope"), f'{self.APP}: unknown class Nope under "cellClass"'
        )
        self.assert_faults_of("Calls", changed(5, cellClass=5), f'{self.APP}: unknown class 5 under "cellClass"')
        self.assert_faults_of("Root", changed(3, detail="Nope"), 'row 3 (Calls): unknown class Nope under "detail"')

    def test_class_of_the_wrong_kind(self):
        self.assert_faults_of(
            "Calls",
            changed(5, cellClass="TDRootListController"),
            f'{self.APP}: TDRootListController under "cellClass" is no PSTableCell',
        )
        self.assert_faults_of(
            "Root",
            changed(3, detail="TDSwitchCell"),
            'row 3 (Calls): TDSwitchCell under "detail" is no UIViewController',
        )

    def test_unknown_selector(self):
        for key in ("set", "get", "action"):
            self.assert_faults_of(
                "Calls",
                changed(5, **{key: "nope:"}),
                f'{self.APP}: TDCallsSettingsController does not respond to "nope:"',
            )
            self.assert_faults_of("Calls", changed(5, **{key: 5}), f'{self.APP}: "{key}" must be a text')
        # Each page knows its own selectors alone.
        self.assert_faults_of(
            "Misc",
            changed(1, set="enableTandemForCalls:specifier:"),
            "row 1 (TandemLoggingEnabled): TDMiscSettingsController does not respond to "
            '"enableTandemForCalls:specifier:"',
        )

    def test_key_with_two_defaults(self):
        jami = "TandemCallsApp-net.jami.Jami"
        self.assert_faults_of(
            "Calls",
            changed(5, key=jami, default=False),
            f'row 8 ({jami}): the key "{jami}" has another default than in Calls.plist: {self.APP}',
        )
        self.assert_faults_of("Calls", changed(5, key=jami, default=True))
        self.assert_faults_of(
            "Messages",
            changed(9, key="TandemEnabledCalls", default=False),
            'row 9 (TandemMessagesApp-sm.puri.Chatty): the key "TandemEnabledCalls" has another default than in '
            "Calls.plist: row 0 (TandemEnabledCalls)",
        )
        self.assert_faults_of("Calls", changed(5, key=5), f'{self.APP}: "key" must be a text')

    def test_several_faults_of_one_row(self):
        self.assert_faults_of(
            "Calls",
            changed(5, id="AppsGroup", cell="Nope", cellClass="Nope", set="nope:", key=5),
            "row 5 (AppsGroup): the identifier is used twice",
            'row 5 (AppsGroup): unknown cell "Nope"',
            'row 5 (AppsGroup): unknown class Nope under "cellClass"',
            'row 5 (AppsGroup): TDCallsSettingsController does not respond to "nope:"',
            'row 5 (AppsGroup): "key" must be a text',
        )


class LayoutOfEachPage(LayoutCheck):
    LAST = 'the last row must be the group "CopyRightHeader"'

    def test_footer(self):
        for name in ("Root", "Calls", "Messages", "Misc"):
            last = len(page_definition(name)["items"]) - 1
            self.assert_faults_of(name, without(last), self.LAST)
            self.assert_faults_of(name, changed(last, cell="PSLinkCell"), self.LAST)
            self.assert_faults_of(name, lambda definition: definition["items"].append(link_item("Last")), self.LAST)

    def test_no_rows(self):
        self.assert_faults_of(
            "Root",
            replaced(items=[]),
            "must hold at least six rows",
            "the master switch must be one of rows 0 and 1",
            'the row "TDSimSettingsController" is missing',
            'the row "VexilProducts" is missing',
            self.LAST,
        )
        self.assert_faults_of(
            "Calls",
            replaced(items=[]),
            '"TandemEnabledCalls" must be row 0',
            'the row "TandemEnabledCalls" is missing',
            'the row "ShowSimSlectionForCalls" is missing',
            'the row "TandemSimSelectionTimeForCalls" is missing',
            self.LAST,
        )
        self.assert_faults_of(
            "Messages",
            replaced(items=[]),
            "the feature switch must be one of rows 0 and 1",
            'the row "TandemEnabledIMToText" is missing',
            'the row "ShowSimSlectionForMessages" is missing',
            'the row "TandemSimSelectionTimeForMessages" is missing',
            self.LAST,
        )
        self.assert_faults_of("Misc", replaced(items=[]), self.LAST)


class LayoutOfRoot(LayoutCheck):
    def test_fewer_than_six_rows(self):
        items = page_definition("Root")["items"]
        five = [items[0], items[1], items[7], items[10], FOOTER_ITEM]
        self.assert_faults_of("Root", replaced(items=five), "must hold at least six rows")
        self.assert_faults_of("Root", replaced(items=[*five[:-1], items[9], FOOTER_ITEM]))

    def test_master_switch(self):
        message = "the master switch must be one of rows 0 and 1"
        self.assert_faults_of("Root", without(1), message)
        self.assert_faults_of("Root", moved(1, 2), message)
        self.assert_faults_of("Root", without(1, "set"), message)
        self.assert_faults_of("Root", moved(1, 0))

    def test_rows_that_the_page_knows(self):
        self.assert_faults_of("Root", without(7), 'the row "TDSimSettingsController" is missing')
        self.assert_faults_of("Root", changed(10, id="Products"), 'the row "VexilProducts" is missing')


class LayoutOfCalls(LayoutCheck):
    def test_feature_switch(self):
        first = '"TandemEnabledCalls" must be row 0'
        self.assert_faults_of("Calls", moved(0, 1), f"row 1 (TandemEnabledCalls): {first}")
        self.assert_faults_of("Calls", without(0), first, 'the row "TandemEnabledCalls" is missing')
        self.assert_faults_of(
            "Calls", changed(0, cell="PSLinkCell"), "row 0 (TandemEnabledCalls): must be a PSSwitchCell"
        )
        self.assert_faults_of(
            "Calls",
            without(0, "set"),
            'row 0 (TandemEnabledCalls): its "set" must be "enableTandemForCalls:specifier:"',
        )

    def test_sim_choice_switch(self):
        self.assert_faults_of("Calls", without(2), 'the row "ShowSimSlectionForCalls" is missing')
        self.assert_faults_of(
            "Calls", changed(2, cell="PSButtonCell"), "row 2 (ShowSimSlectionForCalls): must be a PSSwitchCell"
        )
        self.assert_faults_of(
            "Calls",
            changed(2, set="enableTandemForCalls:specifier:"),
            'row 2 (ShowSimSlectionForCalls): its "set" must be "enableShowSimSelection:specifier:"',
        )

    def test_slider(self):
        slider = "TandemSimSelectionTimeForCalls"
        follow = 'must directly follow "ShowSimSlectionForCalls"'
        self.assert_faults_of("Calls", without(3), f'the row "{slider}" is missing')
        self.assert_faults_of("Calls", moved(3, 5), f"row 5 ({slider}): {follow}")
        self.assert_faults_of("Calls", moved(3, 2), f"row 2 ({slider}): {follow}")
        for entries in ({"cell": "PSSwitchCell"}, {"cellClass": "TDSwitchCell"}):
            self.assert_faults_of(
                "Calls", changed(3, **entries), f"row 3 ({slider}): must be a PSSliderCell of the class TDSliderCell"
            )


class LayoutOfMessages(LayoutCheck):
    THIRD = "must be row 3, directly after its group"
    FOLLOWED = "must be followed by the row that belongs to it"

    def test_feature_switch(self):
        message = "the feature switch must be one of rows 0 and 1"
        self.assert_faults_of("Messages", without(1, "set"), message)
        self.assert_faults_of("Messages", moved(1, 5), message, f"row 2 (TandemEnabledIMToText): {self.THIRD}")
        self.assert_faults_of("Messages", moved(1, 0))

    def test_sending_as_text(self):
        row = "(TandemEnabledIMToText)"
        self.assert_faults_of("Messages", without(3), 'the row "TandemEnabledIMToText" is missing')
        self.assert_faults_of("Messages", without(0), f"row 2 {row}: {self.THIRD}")
        self.assert_faults_of("Messages", without(2), f"row 2 {row}: {self.THIRD}")
        self.assert_faults_of(
            "Messages",
            lambda definition: definition["items"].insert(2, group_item("More")),
            f"row 4 {row}: {self.THIRD}",
        )
        self.assert_faults_of("Messages", changed(2, cell="PSLinkCell"), f"row 3 {row}: {self.THIRD}")
        self.assert_faults_of("Messages", without(4), f"row 3 {row}: {self.FOLLOWED}")
        self.assert_faults_of("Messages", moved(3, 4), f"row 4 {row}: {self.THIRD}", f"row 4 {row}: {self.FOLLOWED}")
        self.assert_faults_of("Messages", changed(3, cell="PSLinkCell"), f"row 3 {row}: must be a PSSwitchCell")
        self.assert_faults_of(
            "Messages",
            without(3, "set"),
            f'row 3 {row}: its "set" must be "tandemEnabledOrDisabledForIMToText:specifier:"',
        )

    def test_sim_choice_switch_and_slider(self):
        slider = "TandemSimSelectionTimeForMessages"
        self.assert_faults_of("Messages", without(6), 'the row "ShowSimSlectionForMessages" is missing')
        self.assert_faults_of("Messages", without(7), f'the row "{slider}" is missing')
        self.assert_faults_of(
            "Messages", moved(7, 9), f'row 9 ({slider}): must directly follow "ShowSimSlectionForMessages"'
        )
        self.assert_faults_of(
            "Messages",
            without(6, "set"),
            'row 6 (ShowSimSlectionForMessages): its "set" must be "enableShowSimSelectionForMessages:specifier:"',
        )
