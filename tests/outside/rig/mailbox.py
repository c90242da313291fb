"""The sender's side of the program's mailbox, as another program would write it."""

import os

from .processes import wait_for


class Mailbox:
    """The mailbox of the program with this data directory."""

    def __init__(self, data):
        self.command = data / "fifo1"
        self._reply = data / "refifo"

    def put(self, text):
        """Leaves a command, over whatever waits there."""
        unfinished = self.command.with_name("from-a-test")
        unfinished.write_text(text)
        os.rename(unfinished, self.command)

    def send(self, text):
        """Leaves a command and waits until it was taken."""
        self._reply.unlink(missing_ok=True)
        self.put(text)
        wait_for(lambda: not self.command.exists(), what=f"somebody to take {text!r}")

    def replied(self):
        """Whether the last command sent was acknowledged."""
        return self._reply.exists() and self._reply.read_text() == "x"

    def ask(self, text):
        """Sends a command and waits until it was acted on."""
        self.send(text)
        wait_for(self.replied, what=f"the reply to {text!r}")
