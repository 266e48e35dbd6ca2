#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/core.h"

namespace {

// Fills a list to its limit of 4095 strings.
void Llenar(char *l[]) {
    for (int i = 0; i < MAXLISTA - 1; i++) ASSERT_EQ(AniadirElemento(l, std::to_string(i).c_str()), i + 1);
}

}  // namespace

TEST(ListaCadenas, AddsUpToTheLimitAndNoFurther) {
    static ListaCadenas l;
    Llenar(l);
    errno = 0;
    EXPECT_EQ(AniadirElemento(l, "y"), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(ElementosEnLista(l), MAXLISTA - 1);
    EXPECT_EQ(l[MAXLISTA - 1], nullptr);
    BorrarLista(l);
    EXPECT_EQ(ElementosEnLista(l), 0);
    errno = 0;
    EXPECT_EQ(AniadirElemento(l, nullptr), -1);
    EXPECT_EQ(errno, EFAULT);
}

TEST(ListaCadenas, SearchGivesTheTerminatorForAnAbsentStringUnlessFull) {
    static ListaCadenas l;
    AniadirElemento(l, "a");
    AniadirElemento(l, "b");
    EXPECT_EQ(BuscarElemento(l, "b"), 1);
    EXPECT_EQ(BuscarElemento(l, "z"), 2);
    // Deleting an absent string from a list that is not full succeeds.
    EXPECT_EQ(BorrarElemento(l, "z"), 0);
    EXPECT_EQ(ElementosEnLista(l), 2);
    EXPECT_EQ(BorrarElemento(l, "a"), 0);
    ASSERT_EQ(ElementosEnLista(l), 1);
    EXPECT_STREQ(l[0], "b");
    EXPECT_EQ(GetSiguienteElemento(l, "b"), nullptr);
    BorrarLista(l);

    Llenar(l);
    errno = 0;
    EXPECT_EQ(BuscarElemento(l, "z"), -1);
    EXPECT_EQ(errno, ENOSPC);
    errno = 0;
    EXPECT_EQ(BorrarElemento(l, "z"), -1);
    EXPECT_EQ(errno, ENOENT);
    errno = 0;
    EXPECT_EQ(GetSiguienteElemento(l, "z"), nullptr);
    EXPECT_EQ(errno, ENODEV);
    // Present strings are still found, the last one too.
    EXPECT_EQ(BuscarElemento(l, "4094"), MAXLISTA - 2);
    EXPECT_EQ(BorrarElemento(l, "0"), 0);
    EXPECT_EQ(ElementosEnLista(l), MAXLISTA - 2);
    EXPECT_STREQ(l[0], "1");
    EXPECT_STREQ(l[MAXLISTA - 3], "4094");
    EXPECT_EQ(l[MAXLISTA - 2], nullptr);
    BorrarLista(l);
}

TEST(ListaCadenas, ElementAccessAndIteration) {
    static ListaCadenas l;
    AniadirElemento(l, "a");
    AniadirElemento(l, "b");
    EXPECT_STREQ(GetElemento(l, 1), "b");
    EXPECT_EQ(GetElemento(l, 2), nullptr);
    EXPECT_EQ(GetElemento(l, 3), nullptr);
    EXPECT_EQ(GetElemento(l, -1), nullptr);
    EXPECT_EQ(GetElemento(l, 1 << 30), nullptr);
    EXPECT_STREQ(GetSiguienteElemento(l, "a"), "b");
    EXPECT_STREQ(GetFirstNextElement(l, 1), "a");
    EXPECT_STREQ(GetFirstNextElement(l, 0), "b");
    EXPECT_EQ(GetFirstNextElement(l, 0), nullptr);
    EXPECT_EQ(GetFirstNextElement(l, 0), nullptr);
    EXPECT_STREQ(GetFirstNextElement(l, 1), "a");
    BorrarLista(l);
}

TEST(ListaCadenas, PrintsTheLastNWithTheirPositions) {
    static ListaCadenas l;
    for (const char *s : {"a", "b", "c"}) AniadirElemento(l, s);
    testing::internal::CaptureStdout();
    ImprimirListaLast(l, 2, 1);
    ImprimirListaLast(l, 0, 1);
    ImprimirListaLast(l, -5, 1);
    ImprimirListaLast(l, 10, 0);
    ImprimirListaFirst(l, 1, 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1->b\n2->c\na\nb\nc\n0->a\n");
    BorrarLista(l);
}

TEST(ListaCadenas, PathAddPathSkipsEmptyComponentsAndCountsFromOne) {
    const char *antes = getenv("PATH");
    std::string guardado = antes ? antes : "";
    PathClear();
    setenv("PATH", "::/bin::/usr/bin:", 1);
    EXPECT_EQ(PathAddPath(), 2);
    EXPECT_STREQ(PathFirst(), "/bin");
    EXPECT_STREQ(PathNext(), "/usr/bin");
    EXPECT_EQ(PathNext(), nullptr);
    setenv("PATH", "", 1);
    EXPECT_EQ(PathAddPath(), 1);
    // Directories already there are added again.
    setenv("PATH", "/bin", 1);
    EXPECT_EQ(PathAddPath(), 1);
    // A value longer than the import buffer is cut, never overrun.
    setenv("PATH", ("/" + std::string(5000, 'd')).c_str(), 1);
    EXPECT_EQ(PathAddPath(), 1);
    EXPECT_EQ(PathDel("/no/esta"), 0);
    int n = 0;
    for (char *d = PathFirst(); d != nullptr; d = PathNext()) {
        n++;
        if (n == 4) {
            EXPECT_EQ(strlen(d), 2047u);
        }
    }
    EXPECT_EQ(n, 4);
    PathClear();
    unsetenv("PATH");
    EXPECT_EQ(PathAddPath(), 0);
    setenv("PATH", guardado.c_str(), 1);
}

TEST(Historico, ClearEmptiesIt) {
    HistoricClear();
    HistoricAdd("uno");
    HistoricAdd("dos");
    EXPECT_EQ(HistoricDimension(), 2);
    EXPECT_STREQ(HistoricGet(1), "dos");
    HistoricClear();
    EXPECT_EQ(HistoricDimension(), 0);
    EXPECT_EQ(HistoricGet(0), nullptr);
}

TEST(TrocearCadena, SplitsAtBlanksTabsAndNewlinesOnly) {
    char linea[] = "  uno\tdos \"tres cuatro\"\n";
    char *tr[MAXPALABRAS];
    ASSERT_EQ(TrocearCadena(linea, tr), 4);
    EXPECT_STREQ(tr[0], "uno");
    EXPECT_STREQ(tr[2], "\"tres");
    EXPECT_EQ(tr[4], nullptr);
    char vacia[] = " \t\n";
    EXPECT_EQ(TrocearCadena(vacia, tr), 0);
    EXPECT_EQ(tr[0], nullptr);
}

TEST(TrocearCadena, TheLargestLineFitsTheWordArray) {
    // 2048 one-letter words make 4095 characters, the longest line read.
    std::string s;
    for (int i = 0; i < 2048; i++) s += i == 0 ? "a" : " a";
    ASSERT_EQ(s.size(), static_cast<size_t>(MAXLINEA - 1));
    char linea[MAXLINEA];
    memcpy(linea, s.c_str(), s.size() + 1);
    char *tr[MAXPALABRAS];
    EXPECT_EQ(TrocearCadena(linea, tr), 2048);
    EXPECT_EQ(tr[2048], nullptr);
}
