"""What goes wrong is said in a sentence, and nothing is waited for without a limit."""
import time


class Failure(Exception):
    """A sentence that says what was expected and what there was."""


def wait_until(what, seconds, look, pause=0.2):
    """What `look` gives as soon as that is something; fails after `seconds`. `what` completes "waited for until"."""
    end = time.monotonic() + seconds
    while True:
        found = look()
        if found:
            return found
        if time.monotonic() > end:
            raise Failure(f"waited {seconds} s in vain until {what}")
        time.sleep(pause)
