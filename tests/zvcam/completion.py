"""Types commands into an interactive bash and zsh, presses the tab key, and compares what the shell then runs.

completion.py BASH_FILE ZSH_FOLDER: the completion for bash, and the folder with zsh's.
"""

import os
import pty
import select
import sys
import tempfile
import time

# What is typed, and the command that it has to become.
CASES = [
    ("zvcam ru\t", "run"),
    ("zvcam --vers\t", "--version"),
    ("zvcam run --jso\t out.json pho\t", "run --json out.json phone.json"),
    ("zvcam run --root fol\t", "run --root folder"),
    ("zvcam run --set ro.boot.pro\tx phone.json", "run --set ro.boot.product.theme_customize=x phone.json"),
    ("zvcam run --json=pho\t", "run --json=phone.json"),
    ("zvcam getprop phone.json vendor.camera.sensor.w.f\t", "getprop phone.json vendor.camera.sensor.w.fuseID"),
    ("zvcam why --device 4 phone.json ZELVAN_CAMERA_ROLE\t", "why --device 4 phone.json ZELVAN_CAMERA_ROLEID"),
    ("zvcam dumpsys phone.json --tag ZELVAN_CAMERA_ROLE\t", "dumpsys phone.json --tag ZELVAN_CAMERA_ROLEID"),
    ("zvcam logcat phone.json --step SetFuse\t", "logcat phone.json --step SetFuseIdProp"),
    ("zvcam streams --format PRIV\t phone.json", "streams --format PRIVATE phone.json"),
    ("zvcam eeprom --layout halcyrion_sem\t pho\t pho\t",
     "eeprom --layout halcyrion_semco_wide_imx707_eeprom phone.json phone.json"),
    ("zvcam diff pho\t pho\t", "diff phone.json phone.json"),
    ("zvcam calibration make-o\t --fuse\t 01", "calibration make-ois --fuse-id 01"),
    ("zvcam calibration pho\t pho\t", "calibration phone.json phone.json"),
    ("zvcam phone from-d\t fol\t -o pho\t", "phone from-device folder -o phone.json"),
    ("zvcam phone check pho\t pho\t", "phone check phone.json phone.json"),
]

STARTS = {
    "bash": (["bash", "--norc", "--noprofile", "-i"],
             "PS1=; bind 'set bell-style none'; . '{bash}'; zvcam() {{ echo \"RAN<$*>\"; }}\n"),
    "zsh": (["zsh", "-f", "-i"],
            "PS1=; unsetopt beep zle_bracketed_paste; fpath=('{zsh}' $fpath); autoload -Uz compinit; compinit -u -D;"
            " zvcam() {{ echo \"RAN<$*>\"; }}\n"),
}


class Shell:
    """An interactive shell on a terminal of its own."""

    def __init__(self, arguments, folder):
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(folder)
            os.environ.update(TERM="dumb", HOME=folder)
            os.execvp(arguments[0], arguments)

    def write(self, text):
        os.write(self.terminal, text.encode())

    def read_until(self, words, seconds=20):
        """What came until a line is `words`, or begins with them where they end in "<"."""
        deadline = time.monotonic() + seconds
        text = ""
        while time.monotonic() < deadline:
            if select.select([self.terminal], [], [], 0.1)[0]:
                text += os.read(self.terminal, 65536).decode(errors="replace")
                for line in text.splitlines(keepends=True):
                    if line.startswith(words) and line.endswith("\n"):
                        return line.strip()
        raise TimeoutError(f"no {words!r} in {text!r}")

    def close(self):
        os.close(self.terminal)
        os.waitpid(self.pid, 0)


def completed(shell, typed):
    for part in typed.replace("\t", "\t\0").split("\0"):
        shell.write(part)
        # A shell that reads its next key while it completes takes both for pasted text.
        time.sleep(0.3 if part.endswith("\t") else 0)
    shell.write("\n")
    return shell.read_until("RAN<")[len("RAN<"):-1]


def main(bash_file, zsh_folder):
    failures = 0
    for name, (arguments, start) in STARTS.items():
        with tempfile.TemporaryDirectory() as folder:
            open(os.path.join(folder, "phone.json"), "w").close()
            os.mkdir(os.path.join(folder, "folder"))
            shell = Shell(arguments, folder)
            shell.write(start.format(bash=os.path.abspath(bash_file), zsh=os.path.abspath(zsh_folder)))
            shell.write("echo RE''ADY\n")
            shell.read_until("READY")
            for typed, expected in CASES:
                # Zsh takes the slash behind a folder away again when a command is run.
                found = " ".join(word.removesuffix("/") for word in completed(shell, typed).split())
                if found != expected:
                    failures += 1
                    print(f"{name}: {typed!r} became {found!r}, not {expected!r}")
            shell.close()
        print(f"{name}: {len(CASES)} command lines")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
