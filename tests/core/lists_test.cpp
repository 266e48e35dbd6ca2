#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "core/core.h"

TEST(ListaCadenas, AnAbsentStringIsFoundAtTheEndAndDeletedUnlessTheListIsFull) {
    static ListaCadenas l;
    for (int i = 0; i < 2; i++) AniadirElemento(l, std::to_string(i).c_str());
    EXPECT_EQ(BuscarElemento(l, "z"), 2);
    EXPECT_EQ(BorrarElemento(l, "z"), 0);
    for (int i = 2; i < MAXLISTA - 1; i++) AniadirElemento(l, std::to_string(i).c_str());
    EXPECT_EQ(BuscarElemento(l, "z"), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(BorrarElemento(l, "z"), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(GetSiguienteElemento(l, "z"), nullptr);
    EXPECT_EQ(errno, ENODEV);
    BorrarLista(l);
}
