"""Compares what two programs answer, in the form of Tests/Mac/Answers/AnswerWriter.h, bit for bit.

usage: same_answers.py FIRST SECOND

FIRST and SECOND are command lines of the shell. The instruction level that a question names is each processor's own.
Prints how much was compared; ends with 1, and the questions whose answers differ, where some do.
"""
import re
import struct
import subprocess
import sys

SHOWN = 20


def parts(stream):
    """The byte strings in a stream, each after its length."""
    while head := stream.read(8):
        (size,) = struct.unpack("<Q", head)
        part = stream.read(size)
        if len(head) != 8 or len(part) != size:
            raise ValueError("an answer is cut off")
        yield part


def answers(stream):
    pairs = parts(stream)
    for question in pairs:
        yield re.sub(r", level -?\d+$", "", question.decode()), next(pairs, b"")


def compare(first, second):
    """The numbers of answers and of bytes, and the questions that differ in wording or answer."""
    count = size = 0
    different = []
    second = answers(second)
    for question, answer in answers(first):
        other_question, other = next(second, ("(nothing)", b""))
        if question != other_question:
            different.append(f"{question} stands against {other_question}")
            return count, size, different
        if answer != other:
            at = next((i for i, (a, b) in enumerate(zip(answer, other)) if a != b), min(len(answer), len(other)))
            different.append(f"{question}: from byte {at} of {len(answer)} on")
        count += 1
        size += len(answer)
    if next(second, None) is not None:
        different.append("the second answers more questions")
    return count, size, different


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    first, second = (subprocess.Popen(command, shell=True, stdout=subprocess.PIPE) for command in sys.argv[1:])
    count, size, different = compare(first.stdout, second.stdout)
    print("\n".join(different[:SHOWN]), end="\n" if different else "")
    print(f"{count} answers compared, {size} bytes, {len(different) or 'none'} different")
    for process in (first, second):
        process.communicate()  # reads on: a program whose reader goes away fails
    failed = any(process.returncode != 0 for process in (first, second))
    sys.exit(1 if different or failed or count == 0 else 0)


if __name__ == "__main__":
    main()
