#include "Server/Base/QtApplication.h"

#include <QCoreApplication>

#include <utility>

namespace Vs {
namespace {

std::function<void()>& installed()
{
    static std::function<void()> maker;
    return maker;
}

} // namespace

void QtApplication::maker(std::function<void()> maker)
{
    installed() = std::move(maker);
}

void QtApplication::need()
{
    if (!QCoreApplication::instance() && installed())
        installed()();
}

} // namespace Vs
