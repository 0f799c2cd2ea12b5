"""Feeds the same phone files to the JSON Schema and to the reader: both take a file, or both refuse it.

usage: phone_schema.py ZVCAM PHONE_FILE...
"""
import json
import re
import subprocess
import sys
import tempfile

import jsonschema

zvcam, samples = sys.argv[1], sys.argv[2:]

# Every key, so that each of its values can be spoilt.
BASE = {
    "$schema": "x.json",
    "name": "n",
    "properties": {"a": "b"},
    "files": {
        "/empty": {},
        "/filled": {"fill": 1, "size": 16, "bytes": {"1": "0a 0B"}},
        "/hex": {"hex": " 01\n"},
        "/text": {"text": "t"},
        "/dual": {"dualcal": {"master": "01", "slave": "02", "block": {"fill": 1, "size": 419}, "crc": True}},
        "/dualHex": {"dualcal": {"block": {"hex": "00"}}},
        "/ois": {"oiscal": {"version": 1, "fuseId": "01", "gainX": 9000, "gainY": "0x2328"}},
    },
    "sensors": [{
        "deviceBits": 1, "deviceId": 7, "sensorId": "0x707", "pixelArray": [8192, 6144], "captureSize": [1, 2],
        "modes": [[1, 2]], "inSensorZoom": [-1],
        "eeprom": {"fill": 0, "bytes": {"0x10": "01"}, "checksums": "halcyrion_semco_wide_imx707_eeprom",
                   "breakChecksums": ["AF", "AWB", "LSC", "PDAF", "OIS"], "readReturns": 100},
        "af": {"capable": True, "points": [[-5, 1], [2, 3]]},
    }],
    "sensorAliases": {"70": {"deviceBits": 128, "deviceId": -7}},
    "logicalDevices": [{"name": "d", "multiSensor": True, "sensorIds": [0], "sensorBits": 1}],
    "sensorDeviceIndexes": {"-1": 1},
    "staticMetadata": {"0x40007": {
        "1": {"type": "none", "values": []}, "2": {"type": "int32", "values": [1]},
        "3": {"type": "int64", "values": [1]}, "4": {"type": "float", "values": [1.5, "NaN"]},
        "5": {"type": "byte", "values": [255]}, "0x6": {"type": "memory", "values": ["01"]}, "7": {"type": "byte"},
    }},
    "faults": {"moduleFactory": True, "logicalDeviceList": False, "sensorList": True, "calibrationDriver": True,
               "sensorDrivers": [0], "sensorObjects": [0], "staticInfo": [7], "metadataUpdate": {"0x1": -5},
               "propertySet": ["p"]},
}
VALUES = [None, True, -1, 256, 65536, 2**31, 2**32, 2**63, 1.5, 1e39, "", "x", "0x", "0x5", "0xFFFFFFFF", "0x100000000",
          "NaN", "01", "012", "\0", "none", "x" * 92, [], [0], [[1, 2]] * 21, {}, {"hex": "01"}, {"fill": 1}]
KEYS = ["", "x", "-1", "9", "0x9", "0x", "0x100000000", "file", "fill", "hex", "text", "/a/b", "/a/", "/a/../b", "a/b",
        "/data/vendor", "/data/vendor/x", "/" + "n" * 256, "\0"]


def variants(value, rebuild):
    """Each document that differs from `value` in one place."""
    for other in VALUES:
        yield rebuild(other)
    if isinstance(value, dict):
        for key, member in value.items():
            yield rebuild({k: v for k, v in value.items() if k != key})
            yield from variants(member, lambda v, key=key: rebuild({**value, key: v}))
        for key in KEYS:
            for member in [{}, 1, "01", *list(value.values())[:1]]:
                if key not in value:
                    yield rebuild({**value, key: member})
    elif isinstance(value, list):
        for i, element in enumerate(value):
            yield from variants(element, lambda v, i=i: rebuild(value[:i] + [v] + value[i + 1:]))
        yield rebuild(value + value[:1] * 40)


def without_comments(text):
    return re.sub(r'("(?:\\.|[^"\\])*")|//[^\n]*', lambda match: match[1] or "", text)


# What a schema cannot say, by the reader's words; docs/phone-file.md names each.
BEYOND = re.compile("a readable file|at this offset|an index that is no sensor|a range of that layout"
                    "|each number once|through the file")

schema = json.loads(subprocess.run([zvcam, "phone", "schema"], check=True, capture_output=True).stdout)
validator = jsonschema.Draft202012Validator
validator.check_schema(schema)
validator = validator(schema)

for sample in samples:
    validator.validate(json.loads(re.sub(r",(\s*[}\]])", r"\1", without_comments(open(sample).read()))))

layouts = ["halcyrion_sunny_tele_ov50d_eeprom", "halcyrion_aac_front_imx596_eeprom", "halcyrion_ofilm_uw_ov13b_eeprom"]
documents = [{"sensors": [{"eeprom": {"checksums": layout, "breakChecksums": ["LSC"]}}]} for layout in layouts]
documents += [BASE, {"sensors": [{}] * 32}, {"sensors": [{}] * 33}, *VALUES, *({key: {}} for key in KEYS)]
for key, value in BASE.items():
    documents += variants(value, lambda v, key=key: {key: v})
with tempfile.TemporaryDirectory() as folder:
    names = []
    for i, document in enumerate(documents):
        names.append(f"{i}.json")
        with open(f"{folder}/{names[-1]}", "w") as file:
            json.dump(document, file)
    errors = subprocess.run([zvcam, "phone", "check", *names], cwd=folder, capture_output=True, text=True).stderr
refused = dict(line.removeprefix("zvcam: ").split(".json: ", 1) for line in errors.splitlines())

disagreements = 0
for i, document in enumerate(documents):
    error = refused.get(str(i), "")
    accepted = validator.is_valid(document)
    if accepted != (error == "") and not (accepted and BEYOND.search(error)):
        disagreements += 1
        print(f"schema {'takes' if accepted else 'refuses'}, reader says \"{error}\": {json.dumps(document)[:2000]}")
print(f"{len(documents)} files, {len(refused)} refused, {disagreements} disagreements")
sys.exit(disagreements > 0 or not 0 < len(refused) < len(documents))
