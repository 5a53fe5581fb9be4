"""password_test.py native|windows PROGRAM...

The password that a link to a server lacks, as cdbtool gets it: from a file, from the environment of PostgreSQL's own
programs, and natively from a person at a terminal, too. Run by tests/server/with-server; PROGRAM with its arguments in front
is what is tried.
"""
import os
import pty
import subprocess
import sys
import tempfile
import termios
import unittest

SECRET = 'right one'


def on_server(statement):
    subprocess.run(['psql', '-qX', '-h', '127.0.0.1', '-p', os.environ['QUIVANE_TEST_SERVER'], '-U', 'quivane', '-c',
                    statement, 'postgres'], check=True, env=os.environ)


class Terminal:
    """The program with a terminal as its three streams."""

    def __init__(self, arguments):
        self.said = b''
        self.child, self.other_end = pty.fork()
        if self.child == 0:
            os.execvp(arguments[0], arguments)

    def wait_for(self, text):
        while text not in self.said:
            if not self.read():
                raise AssertionError(f'it ended and said {self.said!r} instead of {text!r}')

    def read(self):
        try:
            more = os.read(self.other_end, 4096)
        except OSError:
            # The other side is closed.
            more = b''
        self.said += more
        return more

    def is_shown(self):
        """Whether what is typed is shown."""
        return termios.tcgetattr(self.other_end)[3] & termios.ECHO != 0

    def type(self, text):
        os.write(self.other_end, text)

    def end(self):
        """Waits for the end and returns the exit code."""
        while self.read():
            pass
        os.close(self.other_end)
        return os.waitstatus_to_exitcode(os.waitpid(self.child, 0)[1])


class PasswordTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        on_server(f"CREATE ROLE quivane_locked LOGIN PASSWORD '{SECRET}'")
        on_server('CREATE TABLE towns (name text PRIMARY KEY)')
        on_server("INSERT INTO towns VALUES ('Rome')")
        on_server('GRANT SELECT ON towns TO quivane_locked')

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder)
        self.link = self.file('towns.cdb', '[ODBC]\nDRIVER=PostgreSQL Unicode\nSERVER=127.0.0.1\nPORT=' +
                              os.environ['QUIVANE_TEST_SERVER'] + '\nDATABASE=postgres\nUID=quivane_locked\n')

    def file(self, name, content):
        with open(os.path.join(self.folder, name), 'w', encoding='utf-8', newline='') as made:
            made.write(content)
        # By their names alone: to a Windows program a path of this system looks like an option.
        return name

    def run_tool(self, *arguments, **environment):
        return subprocess.run([*program, *arguments], stdin=subprocess.DEVNULL, capture_output=True, encoding='utf-8',
                              env={**os.environ, **environment}, check=False)

    def test_a_file_has_it(self):
        for content in (SECRET, SECRET + '\n', SECRET + '\r\nsomething else\n'):
            run = self.run_tool('tables', self.link, '--password-file', self.file('password', content))
            self.assertEqual((run.stdout, run.stderr, run.returncode), ('towns\n', '', 0), content)

    def test_a_file_that_has_none_is_refused(self):
        for content in ('', '\n' + SECRET):
            run = self.run_tool('tables', self.link, '--password-file', self.file('password', content))
            self.assertIn('has no password', run.stderr)
            self.assertEqual(run.returncode, 1)
        run = self.run_tool('tables', self.link, '--password-file', 'none')
        self.assertIn("can't be read", run.stderr)
        self.assertEqual(run.returncode, 1)

    def test_a_wrong_one_is_told_and_shown_nowhere(self):
        run = self.run_tool('tables', self.link, '--password-file', self.file('password', 'wrong-one'))
        self.assertIn('does not take the password', run.stderr)
        self.assertNotIn('wrong-one', run.stderr + run.stdout)
        self.assertEqual(run.returncode, 1)

    def test_without_anybody_to_ask_the_way_is_told(self):
        run = self.run_tool('tables', self.link)
        self.assertIn('The server wants a password. --password-file names a file that has it.', run.stderr)
        self.assertEqual((run.stdout, run.returncode), ('', 1))

    def test_the_environment_of_the_servers_own_programs_counts(self):
        run = self.run_tool('tables', self.link, PGPASSWORD=SECRET)
        self.assertEqual((run.stdout, run.stderr, run.returncode), ('towns\n', '', 0))

    def test_every_command_takes_the_file(self):
        password = self.file('password', SECRET)
        for arguments, answer in (
                (['show', self.link, 'towns', '--csv'], 'name\nRome\n'),
                (['query', self.link, 'SELECT count(*) AS n FROM towns', '--csv'], 'n\n1\n'),
                (['find', self.link, 'rom'], 'towns\t1\tname\tRome\n'),
                (['export', self.link, 'towns', '--line-end', 'lf', '--quiet'], 'name\nRome\n')):
            run = self.run_tool(*arguments, '--password-file', password)
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertEqual(run.stdout.replace('"', ''), answer)
        run = self.run_tool('info', self.link, '--password-file', password)
        self.assertIn('tables: 1\n', run.stdout)


class TerminalTest(PasswordTest):
    def ask(self, *arguments):
        terminal = Terminal([*program, *arguments])
        terminal.wait_for(b'Password for ')
        terminal.wait_for(b': ')
        self.assertFalse(terminal.is_shown())
        return terminal

    def test_a_person_types_it_unseen(self):
        terminal = self.ask('tables', self.link)
        terminal.type(SECRET.encode() + b'\n')
        terminal.wait_for(b'towns\r\n')
        self.assertTrue(terminal.is_shown())
        self.assertEqual(terminal.end(), 0)
        self.assertNotIn(SECRET.encode(), terminal.said)

    def test_a_person_who_types_another_one_is_told(self):
        terminal = self.ask('tables', self.link)
        terminal.type(b'nonsense\n')
        terminal.wait_for(b'does not take the password')
        self.assertTrue(terminal.is_shown())
        self.assertEqual(terminal.end(), 1)
        self.assertNotIn(b'nonsense', terminal.said)

    def test_a_person_may_give_up(self):
        for keys in (b'\x03', b'\x04'):
            terminal = self.ask('tables', self.link)
            terminal.type(keys)
            terminal.wait_for(b'The server wants a password.')
            self.assertTrue(terminal.is_shown())
            self.assertEqual(terminal.end(), 1)

    def test_nobody_is_asked_for_what_a_file_has(self):
        terminal = Terminal([*program, 'tables', self.link, '--password-file', self.file('password', SECRET)])
        self.assertEqual(terminal.end(), 0)
        self.assertEqual(terminal.said, b'towns\r\n')


if __name__ == '__main__':
    kind, program = sys.argv[1], sys.argv[2:]
    # Under Wine each start takes its time; a terminal for a Windows program is not to be had there.
    on_windows = ['PasswordTest.' + name for name in ('test_a_wrong_one_is_told_and_shown_nowhere',
                                                      'test_without_anybody_to_ask_the_way_is_told',
                                                      'test_the_environment_of_the_servers_own_programs_counts')]
    unittest.main(argv=sys.argv[:1], defaultTest='TerminalTest' if kind == 'native' else on_windows)
