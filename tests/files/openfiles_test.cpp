// The open-file table's operations and its listing line.
#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include "files/files.h"
#include "support/session.h"

namespace {

// Collects what the code under test prints on standard output.
class Captura {
  public:
    Captura() {
        fflush(stdout);
        fichero_ = tmpfile();
        guardado_ = dup(STDOUT_FILENO);
        dup2(fileno(fichero_), STDOUT_FILENO);
    }
    ~Captura() { Restaurar(); }
    std::string Texto() {
        Restaurar();
        std::string s;
        rewind(fichero_);
        for (int c; (c = fgetc(fichero_)) != EOF;) s += static_cast<char>(c);
        return s;
    }

  private:
    void Restaurar() {
        if (guardado_ == -1) return;
        fflush(stdout);
        dup2(guardado_, STDOUT_FILENO);
        close(guardado_);
        guardado_ = -1;
    }
    FILE *fichero_;
    int guardado_ = -1;
};

int Lineas(const std::string &s) {
    int n = 0;
    for (char c : s) n += c == '\n';
    return n;
}

class TablaFicheros : public ::testing::Test {
  protected:
    void SetUp() override { ClearOpenFilesList(); }
    void TearDown() override {
        for (int df = 0; df < MAXFICHEROS; df++) LiberarDeRedireccion(df);
        ClearOpenFilesList();
    }
};

TEST_F(TablaFicheros, RefusesPositionsOutsideTheTable) {
    errno = 0;
    EXPECT_EQ(AddOpenFile(MAXFICHEROS, "x", 0, 0), -1);
    EXPECT_EQ(errno, ENOENT);
    errno = 0;
    EXPECT_EQ(AddOpenFile(-1, "x", 0, 0), -1);
    EXPECT_EQ(errno, ENOENT);
    errno = 0;
    EXPECT_EQ(RemoveOpenFile(MAXFICHEROS + 7), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(NombreFicheroDescriptor(MAXFICHEROS), nullptr);
    EXPECT_EQ(DescriptorRedireccion(-3), 0);
    UsarEnRedireccion(MAXFICHEROS);  // must not write past the table
    LiberarDeRedireccion(-1);
}

TEST_F(TablaFicheros, AddCopiesTheNameAndOverwrites) {
    char nombre[] = "primero";
    EXPECT_EQ(AddOpenFile(MAXFICHEROS - 1, nombre, O_RDWR, 0), MAXFICHEROS - 1);
    nombre[0] = 'X';
    EXPECT_STREQ(NombreFicheroDescriptor(MAXFICHEROS - 1), "primero");
    EXPECT_EQ(AddOpenFile(MAXFICHEROS - 1, "segundo", O_WRONLY, 1), MAXFICHEROS - 1);
    EXPECT_STREQ(NombreFicheroDescriptor(MAXFICHEROS - 1), "segundo");
    EXPECT_EQ(DescriptorRedireccion(MAXFICHEROS - 1), 1);
}

TEST_F(TablaFicheros, RemoveFreesTheEntryButKeepsTheRedirectionMark) {
    ASSERT_EQ(AddOpenFile(900, "f", O_WRONLY | O_APPEND, 1), 900);
    EXPECT_EQ(RemoveOpenFile(900), 900);
    EXPECT_EQ(NombreFicheroDescriptor(900), nullptr);
    EXPECT_EQ(DescriptorRedireccion(900), 1);
    errno = 0;
    EXPECT_EQ(RemoveOpenFile(900), -1);
    EXPECT_EQ(errno, ENOENT);
    Captura c;
    PrintOpenFile(900);
    // Mode 0 after removal: no flag words, only the mark.
    EXPECT_EQ(c.Texto(), "descriptor: 900, offset: (  )-> no usado (redir)\n");
}

TEST_F(TablaFicheros, ListingLineShowsOffsetFlagsInOrderAndNeverReadOnly) {
    labtest::TempDir dir;
    int df = open((dir / "notas.txt").c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0600);
    ASSERT_NE(df, -1);
    ASSERT_EQ(write(df, "12345", 5), 5);
    ASSERT_EQ(AddOpenFile(df, "notas.txt", O_TRUNC | O_WRONLY | O_CREAT, 0), df);
    ASSERT_EQ(AddOpenFile(901, "todas", O_EXCL | O_RDWR | O_APPEND | O_CREAT | O_TRUNC | O_WRONLY, 1), 901);
    ASSERT_EQ(AddOpenFile(902, "lectura", O_RDONLY, 0), 902);
    Captura c;
    PrintOpenFile(df);
    PrintOpenFile(901);
    PrintOpenFile(902);
    PrintOpenFile(903);
    EXPECT_EQ(c.Texto(), "descriptor: " + std::to_string(df) +
                             ", offset: (5)-> notas.txt O_CREAT O_WRONLY O_TRUNC \n"
                             "descriptor: 901, offset: (  )-> todas O_CREAT O_EXCL O_WRONLY O_RDWR O_APPEND O_TRUNC "
                             "(redir)\n"
                             "descriptor: 902, offset: (  )-> lectura \n"
                             "descriptor: 903, offset: (  )-> no usado \n");
    close(df);
}

TEST_F(TablaFicheros, ListingOfAllGoesOnThroughTheRunOfUsedPositions) {
    for (int df = 0; df < 23; df++) AddOpenFile(df, "x", 0, 0);
    AddOpenFile(24, "x", 0, 0);  // after the gap: not reached
    {
        Captura c;
        ListOpenFiles(-1);
        EXPECT_EQ(Lineas(c.Texto()), 23);
    }
    ClearOpenFilesList();
    AddOpenFile(25, "x", 0, 0);
    {
        Captura c;
        ListOpenFiles(-1);
        EXPECT_EQ(Lineas(c.Texto()), 20);  // the first 20 always
    }
}

TEST_F(TablaFicheros, ListingsStopAtTheEndOfTheTable) {
    for (int df = 0; df < MAXFICHEROS; df++) AddOpenFile(df, "x", 0, 0);
    for (int n : {-1, MAXFICHEROS, MAXFICHEROS + 1, INT_MAX}) {
        Captura c;
        ListOpenFiles(n);
        std::string s = c.Texto();
        EXPECT_EQ(Lineas(s), MAXFICHEROS) << n;
        EXPECT_NE(s.find("descriptor: 4095, offset: (  )-> x \n"), std::string::npos);
    }
    for (int n : {0, -2, INT_MIN}) {
        Captura c;
        ListOpenFiles(n);
        EXPECT_EQ(c.Texto(), "") << n;
    }
}

TEST(LeerDescriptor, ReadsLikeAtoiWithoutOverflow) {
    EXPECT_EQ(LeerDescriptor("12"), 12);
    EXPECT_EQ(LeerDescriptor("12abc"), 12);
    EXPECT_EQ(LeerDescriptor("abc"), 0);
    EXPECT_EQ(LeerDescriptor("-4"), -4);
    EXPECT_EQ(LeerDescriptor("99999999999999999999"), INT_MAX);
    EXPECT_EQ(LeerDescriptor("-99999999999999999999"), INT_MIN);
}

}  // namespace
