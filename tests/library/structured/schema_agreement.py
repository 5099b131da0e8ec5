"""Documents made by damaging valid ones: the schema and the program must come to the same verdict on each.

    schema_agreement.py SCHEMA PROGRAMS STARTERS
"""

import copy
import json
import pathlib
import random
import subprocess
import sys
import tempfile

import jsonschema

# A schema can't say these. Each must come, in a document that the schema takes.
ONLY_THE_PROGRAM = ("duplicate section ID", "duplicate entry ID", "maximum 2000 entries per sheet")

SPACES = "\t\n\v\f\r \x85\xa0\u1680\u2000\u200a\u2028\u2029\u202f\u205f\u3000"
VALUES = (
    [None, True, False, 0, 1, 1.0, 1.5, 2, -1, 2**63, [], {}, [[]], [None], "", "x", SPACES, "\u200b", "\0", "$schema"]
    + [text * n for text in ("x", "\U0001f3b9", "e\u0301") for n in (64, 65, 128, 129, 200, 201, 2000, 2001, 4000, 4001)]
    + [f"f{number}" for number in range(26)] + [["function"], "\b", "\x0e", "\u1fff"] + ["f01", "F1", "x\n", "ret", "Return", "return\n", "e\u0301", "\u00e9"]
    + [["shift", "shift"], ["shift", "command"], ["Shift"], ["fn"], [7]]
)
# Around each edge of what is white space or control, and one of each plane.
EDGES = [0x00, 0x20, 0x7F, 0xA0, 0xAD, 0x600, 0x605, 0x61C, 0x6DD, 0x70F, 0x890, 0x891, 0x8E2, 0x1680, 0x180E, 0x2000,
         0x200F, 0x2028, 0x202F, 0x205F, 0x2064, 0x2066, 0x206F, 0x3000, 0xD7FF, 0xE000, 0xFEFF, 0xFFF9, 0xFFFB, 0xFFFF,
         0x110BD, 0x110CD, 0x13430, 0x13438, 0x1BCA0, 0x1BCA3, 0x1D173, 0x1D17A, 0xE0001, 0xE0020, 0xE007F, 0x10FFFF]
MANY = (1, 2, 4, 5, 8, 9, 100, 101, 200, 201)


def places(value, path=()):
    yield path
    if isinstance(value, (dict, list)):
        for key, child in value.items() if isinstance(value, dict) else enumerate(value):
            yield from places(child, path + (key,))


def changed(document, path, change):
    """A copy with the value at the path gone through a change; without it where that gives nothing."""
    document = {"": copy.deepcopy(document)}
    parent, key = document, ""
    for step in path:
        parent, key = parent[key], step
    if result := change(parent[key]):
        (parent[key],) = result
    else:
        del parent[key]
    return document.get("")


def repeated(count):
    """Elements with ids of their own, since the same ones would be told before their number."""
    def element(value, number):
        return {**value, "id": f"{value['id']} {number}"} if isinstance(value, dict) and "id" in value else value
    return lambda value: ([element(value[0], number) for number in range(count)] if value and isinstance(value, list)
                          else value,)


def documents(starters, dice):
    base = json.loads((pathlib.Path(__file__).parent / "base.quillory.json").read_text())
    yield from (json.loads(path.read_text()) for path in starters.glob("*.quillory.json"))
    paths = list(places(base))
    changes = [lambda _, v=v: (v,) for v in VALUES] + [lambda _: ()] + [repeated(n) for n in MANY]
    yield from (changed(base, path, change) for path in paths for change in changes)
    key = next(path for path in paths if path[-1:] == ("key",))
    around = {edge + offset for edge in EDGES for offset in (-1, 0, 1)} | set(dice.sample(range(0x110000), 3000))
    for scalar in sorted(around):
        if 0 <= scalar < 0x110000 and not 0xD800 <= scalar < 0xE000:
            yield changed(base, key, lambda _: (chr(scalar),))
    for _ in range(500):
        once = changed(base, dice.choice(paths), dice.choice(changes))
        yield changed(once, dice.choice(list(places(once))), dice.choice(changes))
    section, (entry, _) = base["sections"][0], base["sections"][0]["entries"]
    full = {**section, "entries": repeated(200)([entry])[0]}
    yield changed(base, ("sections",), lambda value: ([section, section],))
    yield changed(base, ("sections", 1, "entries"), lambda value: ([entry],))
    yield changed(base, ("sections",), lambda value: repeated(11)([full]))


def verdicts_of_program(folder, programs):
    output = subprocess.run([programs / "quillory-inspect", folder], capture_output=True, check=True).stdout
    return {int(sheet["id"].split(".")[0]): sheet.get("error") or "" for sheet in json.loads(output)["sheets"]}


def main(schema, programs, starters):
    validator = jsonschema.Draft202012Validator(json.loads(schema.read_text()))
    validator.check_schema(validator.schema)
    made = list(documents(starters, random.Random(7)))
    with tempfile.TemporaryDirectory() as folder:
        for number, document in enumerate(made):
            pathlib.Path(folder, f"{number}.quillory.json").write_text(json.dumps(document))
        program = verdicts_of_program(folder, programs)
    schemas = [validator.is_valid(document) for document in made]
    excused = {number for number, error in program.items() if error.endswith(ONLY_THE_PROGRAM)}
    differing = [number for number, valid in enumerate(schemas) if number not in excused and valid == bool(program[number])]
    for number in differing[:10]:
        print(f"program: {program[number] or 'valid'}; schema: {'valid' if schemas[number] else 'broken'}")
        print("   ", json.dumps(made[number])[:400])
    unseen = [rule for rule in ONLY_THE_PROGRAM
              if not any(schemas[number] and program[number].endswith(rule) for number in excused)]
    print(f"{len(made)} documents, {sum(schemas)} valid by the schema, {len(excused)} excused, {len(differing)} differ")
    return bool(differing or unseen or not len(made) / 10 < sum(schemas) < len(made) * 9 / 10)


if __name__ == "__main__":
    sys.exit(main(*map(pathlib.Path, sys.argv[1:])))
