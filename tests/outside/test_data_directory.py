"""A start where the engine's files have no place."""

import pytest

from rig import wait_for

NO_DOCUMENTS = ('Vireon needs the directory "{}", which does not exist. '
                "Create it and start Vireon again.")
NOT_WRITABLE = ('Vireon cannot write into the directory "{}". '
                "Change its owner or its permissions and start Vireon again.")


def without_documents(app):
    app.data.parent.rmdir()
    return NO_DOCUMENTS.format(app.data.parent)


def with_a_file_in_its_place(app):
    app.data.write_text("")
    # The engine has no place for its files either.
    app.allow(r"^vireon-main: ")
    return NOT_WRITABLE.format(app.data)


@pytest.mark.parametrize("take_away", [without_documents, with_a_file_in_its_place])
def test_user_is_told_once_what_to_do(install, take_away):
    app = install()
    text = take_away(app)
    app.start()
    app.wait_until_shows(text)
    assert app.log_count(r'starting "?\./vireon-main')
    app.act("OK")
    wait_for(lambda: not app.shows(text), what="a closed box")
    app.click("File")
    app.click("Hide")
    assert app.quit() == 0


def test_nothing_is_said_where_all_is_well(install):
    app = install().start()
    app.wait_until_shows("Started and ready")
    assert not any("directory" in text for text in app.texts())
