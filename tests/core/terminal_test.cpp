// Line editing at a terminal, end to end: the shell on a pseudo-terminal of
// its own, keys typed as a person types them.
#include <gtest/gtest.h>

#include <csignal>
#include <regex>
#include <string>
#include <sys/wait.h>

#include "core/core.h"
#include "support/session.h"

namespace {

const std::string Up = "\x1b[A", Left = "\x1b[D";
const std::string Prompt = "L> ";

class Edicion : public ::testing::Test {
  protected:
    void SetUp() override {
#ifndef LABSH_PRUEBAS_EDITLINE
        GTEST_SKIP() << "built without editline";
#endif
        ASSERT_TRUE(EditorDisponible());  // built with it: it must load
    }
    // A shell with the search path and a short prompt, waiting for a line.
    std::unique_ptr<labtest::Terminal> Start(int columns = 80) {
        auto t = std::make_unique<labtest::Terminal>(dir.path(), std::vector<std::string>{"-p"}, columns);
        t->readUntil("%) ");
        t->waitRaw();
        Line(*t, "prompt L>%b");
        return t;
    }
    // Types a line and returns what it printed, up to the next prompt, once
    // the editor reads again.
    static std::string Line(labtest::Terminal &t, const std::string &keys) {
        t.type(keys + "\r");
        std::string s = t.readUntil("\r\n" + Prompt);
        t.waitRaw();
        return s.substr(0, s.size() - Prompt.size());
    }
    labtest::TempDir dir;
};

TEST_F(Edicion, UpWalksTheShellsOwnHistoryNewestFirst) {
    const char *const echoed[] = {"tres", "dos", "uno"};
    for (int ups = 1; ups <= 3; ups++) {
        auto t = Start();
        for (const char *w : {"uno", "dos", "tres"}) Line(*t, std::string("echo ") + w);
        std::string keys;
        for (int i = 0; i < ups; i++) keys += Up;
        EXPECT_NE(Line(*t, keys).find(std::string("\r\n") + echoed[ups - 1] + "\r\n"), std::string::npos) << ups;
        if (ups == 3) {
            EXPECT_NE(Line(*t, "historic").find("0->prompt L>%b\r\n1->echo uno\r\n2->echo dos\r\n3->echo tres\r\n"
                                                "4->echo uno\r\n5->historic\r\n"),
                      std::string::npos);
        }
    }
}

TEST_F(Edicion, ARecalledLineEditedInTheMiddleRunsAndIsStoredWithItsBlanks) {
    auto t = Start();
    Line(*t, "  echo   uno dos");
    EXPECT_NE(Line(*t, Up + Left + Left + Left + "X").find("\r\nuno Xdos\r\n"), std::string::npos);
    EXPECT_NE(Line(*t, "historic -2").find("\r\n2->  echo   uno Xdos\r\n3->historic -2\r\n"), std::string::npos);
    // After a clear nothing is recalled: Up leaves the line empty.
    Line(*t, "historic -clear");
    EXPECT_NE(Line(*t, Up + "historic").find("\r\n0->historic\r\n"), std::string::npos);
}

TEST_F(Edicion, TabCompletesWhatWouldRunAsACommandNowAndFileNames) {
    labtest::WriteFile(dir / "fichero-unico.txt", "");
    labtest::WriteFile(dir / "alfa1", "");
    labtest::WriteFile(dir / "alfa2", "");
    auto t = Start();
    EXPECT_NE(Line(*t, "numse\t").find("numserie del shell"), std::string::npos);
    // checkvalid stands in no assignment list: with override off it is not
    // completed, and the word runs as a program.
    EXPECT_NE(Line(*t, "checkv\t").find("No ejecutado"), std::string::npos);
    Line(*t, "override on");
    EXPECT_NE(Line(*t, "checkv\t").find("Todos los comandos validos existen"), std::string::npos);
    // Many names, kept in order as they come.
    t->type("memf\t\t");
    t->readUntil("memfill       memfs-cp      memfs-find    memfs-label   memfs-mv\r\nmemfs         memfs-del");
    t->type("\x15");
    // help lays the names out to the terminal's 80 columns.
    EXPECT_NE(Line(*t, "help").find("\r\nmemmalloc mmalloc memdemalloc dememmalloc memmmap mmmap memdemmap dememmmap \r\n"),
              std::string::npos);
    EXPECT_NE(Line(*t, "open fich\t").find("Anadida entrada 3 a la tabla ficheros abiertos"), std::string::npos);
    // Two names: the first Tab completes what they share, the second lists them.
    t->type("open al\t\t");
    t->readUntil("alfa1  alfa2\r\n");
    EXPECT_NE(Line(*t, "2").find("Anadida entrada 4"), std::string::npos);
    // Nothing typed: every name but the hidden ones, in order.
    labtest::WriteFile(dir / ".oculto", "");
    t->type("open \t\t");
    t->readUntil("alfa1              alfa2              fichero-unico.txt\r\n");
    // A prompt of two lines: its first line is written before the editor's.
    t->type("\x15prompt a%nL>%b\r");
    t->readUntil("\r\na\r\n" + Prompt);
}

TEST_F(Edicion, AnEditedLineLongerThanALineRunsInPiecesAsFromAScript) {
    auto t = Start();
    const std::string as(MAXLINEA - 1 - 5, 'a');
    const std::string keys = "echo " + as + "echo partido";
    for (size_t i = 0; i < keys.size(); i += 256) {
        t->type(keys.substr(i, 256));
        t->drain(std::chrono::milliseconds(20));
    }
    // The first piece runs, then the rest after a prompt of its own.
    t->type("\r");
    std::string salida = t->readUntil("partido\r\n" + Prompt);
    EXPECT_NE(salida.find("\r\n" + as + "\r\n" + Prompt + "partido\r\n"), std::string::npos);
}

TEST_F(Edicion, CtrlCWithTheDefaultActionEndsTheShellAndLeavesTheTerminalAsItWas) {
    auto t = Start();
    // A program in the foreground has the terminal in its normal mode.
    std::string stty = Line(*t, "stty -a");
    EXPECT_TRUE(std::regex_search(stty, std::regex("(^|\\s)icanon"))) << stty;
    EXPECT_FALSE(std::regex_search(stty, std::regex("(^|\\s)-(icanon|echo)\\s"))) << stty;
    t->type("echo a medias\x03");
    int status = t->wait();
    ASSERT_TRUE(WIFSIGNALED(status)) << status;
    EXPECT_EQ(WTERMSIG(status), SIGINT);
    EXPECT_TRUE(labtest::SameMode(t->mode(), t->initialMode()));
}

TEST_F(Edicion, CtrlCWithAHandlerCountsAndTheReadFailsAsWithoutTheEditor) {
    auto t = Start();
    Line(*t, "override on");
    Line(*t, "sighandler -show INT");
    Line(*t, "usesignals on");
    for (const char *n : {"1", "2"}) {
        t->type("echo x");
        t->readUntil("echo x");
        t->type("\x03");
        t->readUntil(std::string("Recibida senal INT ") + n + " veces en 0x");
        // The read failed and the line is gone, or the signal came just
        // outside the read and the line is killed here.
        t->type("\x15" "echo sync\r");
        t->readUntil("\r\nsync\r\n" + Prompt);
        t->waitRaw();
    }
    Line(*t, "usesignals off");
    // The signal may come just before the shell is back in its read, which
    // it then does not interrupt: Ctrl-C again until the shell ends.
    int status = -1;
    for (int i = 0; i < 10 && status == -1; i++) {
        t->type("\x03");
        status = t->wait(std::chrono::seconds(3));
    }
    std::string rest = t->drain();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status << t->transcript();
    EXPECT_NE(rest.find("Recibida senal INT 3 veces en 0x"), std::string::npos);
    EXPECT_TRUE(labtest::SameMode(t->mode(), t->initialMode()));
}

TEST_F(Edicion, CtrlDOnAnEmptyLineEndsWithStatusZero) {
    auto t = Start();
    t->type("\x04");
    int status = t->wait();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_TRUE(labtest::SameMode(t->mode(), t->initialMode()));
}

TEST_F(Edicion, AResizeDrawsTheLineAgainAtTheNewWidth) {
    const std::string texto = "abcdefghijklmnopqrstuvwxyz0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    auto t = Start();
    t->type("echo " + texto);
    t->readUntil("WXYZ");
    t->resize(30, 24);
    // Drawn again from the prompt, broken at the 30th column.
    std::string again = t->readUntil(Prompt + "echo " + texto.substr(0, 22));
    std::string rest = t->drain();
    EXPECT_EQ(rest.find(texto.substr(0, 23)), std::string::npos) << rest;
    EXPECT_NE(Line(*t, "!").find("\r\n" + texto + "!\r\n"), std::string::npos);
}

}  // namespace
