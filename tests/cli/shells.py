"""Shells that complete a line as they do for whoever sits before them.

Each has `words(line)`: everything that the shell offers for the last word of the line, `only_word(line)`: what becomes
of that word when there is but one offer, and `reason()`: why the shell cannot be tried here."""

import os
import pathlib
import pty
import select
import shlex
import shutil
import signal
import subprocess
import time

SECONDS = 600
ALL, SAVE, CLEAR, TAB = b"\x14", b"\x07", b"\x15", b"\t"  # The first three are Control with T, G, U.


def words_of(line):
    """The words of a line, whose last one may want its closing quotation mark."""
    for end in ("", '"', "'"):
        try:
            return shlex.split(line + end)
        except ValueError:
            continue
    raise ValueError(line)


class InteractiveShell:
    """A shell on a terminal of its own. Its start-up file binds a key that puts all that it offers into the line, and
    one that saves the line to a file."""

    name = None
    start_up_file = None
    arguments = []
    saves = None

    def __init__(self, manual, folder, environment):
        self.saved = folder / "line"
        self.output = b""
        (folder / self.start_up_file).write_text(self.start_up(manual, folder), encoding="utf-8")
        environment = dict(environment, TERM="dumb", SAVED=str(self.saved), INPUTRC=os.devnull, ZDOTDIR=str(folder))
        arguments = [argument.format(folder=folder) for argument in self.arguments]
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            try:
                os.chdir(folder)
                os.execvpe(self.name, [self.name, *arguments], environment)
            finally:
                os._exit(127)
        self.wait_for_line()

    @classmethod
    def reason(cls):
        return None if shutil.which(cls.name) else f"{cls.name} is not installed"

    def close(self):
        os.kill(self.process, signal.SIGKILL)
        os.waitpid(self.process, 0)
        os.close(self.terminal)

    def wait_for_line(self):
        end = time.monotonic() + SECONDS
        while not self.saved.exists():
            if time.monotonic() > end:
                raise TimeoutError(f"{self.name} said nothing but {self.output!r}")
            if select.select([self.terminal], [], [], 0.02)[0]:
                try:
                    self.output += os.read(self.terminal, 65536)
                except OSError as problem:
                    raise EOFError(f"{self.name} ended: {self.output!r}") from problem
        line = self.saved.read_text(encoding="utf-8")
        self.saved.unlink()
        return line

    def completed(self, line, key):
        os.write(self.terminal, line.encode() + key + SAVE)
        result = self.wait_for_line()
        os.write(self.terminal, CLEAR)
        return result

    def words(self, line):
        result = self.completed(line, ALL)
        if result.rstrip() == line.rstrip():
            return []
        return words_of(result)[len(words_of(line)) - (not line.endswith(" ")) :]

    def only_word(self, line):
        return words_of(self.completed(line, TAB))[-1]


class Bash(InteractiveShell):
    name = "bash"
    start_up_file = "start.bash"
    arguments = ["--noprofile", "--rcfile", "{folder}/start.bash", "-i"]
    before = ""

    def start_up(self, manual, folder):
        return f"""
            {self.before}
            {self.load(manual, folder)}
            PS1='> '
            HISTFILE=
            bind 'set enable-bracketed-paste off'
            bind 'set bell-style none'
            bind '"\\C-t": insert-completions'
            save() {{ printf '%s' "$READLINE_LINE" >"$SAVED.new"; mv "$SAVED.new" "$SAVED"; }}
            bind -x '"\\C-g": save'
            PROMPT_COMMAND='PROMPT_COMMAND=; save'
            """

    def load(self, manual, folder):
        return f". {shlex.quote(str(manual / 'dorvaselin.bash'))}"


class BashCompletion(Bash):
    """Bash with the package of completions, which loads ours from a folder when it is wanted for the first time."""

    package = pathlib.Path("/usr/share/bash-completion/bash_completion")
    before = f". {package}"

    @classmethod
    def reason(cls):
        return super().reason() or (None if cls.package.exists() else "bash-completion is not installed")

    def load(self, manual, folder):
        (folder / "user/completions").mkdir(parents=True)
        shutil.copy(manual / "dorvaselin.bash", folder / "user/completions/dorvaselin")
        return f"BASH_COMPLETION_USER_DIR={shlex.quote(str(folder / 'user'))}"


class Zsh(InteractiveShell):
    name = "zsh"
    start_up_file = ".zshrc"
    arguments = ["-d", "-i"]

    def start_up(self, manual, folder):
        return f"""
            fpath=({shlex.quote(str(manual))} $fpath)
            autoload -Uz compinit && compinit -u -D
            unsetopt beep
            PS1='> '
            all_matches() {{ _main_complete; compstate[insert]=all; compstate[list]=; }}
            zle -C all-matches complete-word all_matches
            bindkey '^T' all-matches
            save() {{ print -rn -- "$BUFFER" >"$SAVED.new"; mv "$SAVED.new" "$SAVED"; }}
            zle -N save
            bindkey '^G' save
            bindkey '^U' kill-whole-line
            zle-line-init() {{ save; zle -D zle-line-init; }}
            zle -N zle-line-init
            """


class ZshSourced(Zsh):
    """Zsh whose start-up file reads the completion instead of finding it."""

    def start_up(self, manual, folder):
        text = super().start_up(manual, folder).replace(f"fpath=({shlex.quote(str(manual))} $fpath)", "")
        return f"{text}\n. {shlex.quote(str(manual / '_dorvaselin'))}\n"


class Fish:
    """Fish tells what it offers without a terminal."""

    def __init__(self, manual, folder, environment):
        self.manual = manual
        self.folder = folder
        self.environment = environment
        self.output = b""

    @staticmethod
    def reason():
        return None if shutil.which("fish") else "fish is not installed"

    def close(self):
        pass

    def words(self, line):
        script = self.manual / "dorvaselin.fish"
        result = subprocess.run(
            ["fish", "--no-config", "-c", 'source $argv[1]; complete -C "$argv[2]"', script, line],
            capture_output=True,
            cwd=self.folder,
            env=self.environment,
            timeout=SECONDS,
            check=False,
        )
        self.output += result.stderr
        return [word.split("\t")[0] for word in result.stdout.decode().splitlines()]

    def only_word(self, line):
        (word,) = self.words(line)
        return word


SHELLS = {"bash": Bash, "bash-completion": BashCompletion, "zsh": Zsh, "zsh-sourced": ZshSourced, "fish": Fish}
