#include <gtest/gtest.h>

#include <cerrno>

#include "core/core.h"

TEST(ListaCadenas, AddsUpToTheLimit) {
    static ListaCadenas l;
    for (int i = 0; i < MAXLISTA - 1; i++) ASSERT_EQ(AniadirElemento(l, "x"), i + 1);
    errno = 0;
    EXPECT_EQ(AniadirElemento(l, "y"), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(ElementosEnLista(l), MAXLISTA - 1);
    BorrarLista(l);
    EXPECT_EQ(ElementosEnLista(l), 0);
}
