#pragma once

#include "UI/Design/Edit/EditCmd.h"

namespace Vu::Design {

/// Base of the commands that combine bodies: one target, and the tools that are consumed unless they are to
/// be kept.
class CombineCmd : public Vs::Implements<CombineCmd, EditCmd>
{
public:
    using Implements::Implements;

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
    virtual Vs::CombineEdit::Kind kind() const = 0;

private:
    SelectionCommandInput* m_target = nullptr;
    SelectionCommandInput* m_tools = nullptr;
    BoolValueCommandInput* m_keep = nullptr;
};

class JoinCmd : public Vs::Implements<JoinCmd, CombineCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    Vs::CombineEdit::Kind kind() const override { return Vs::CombineEdit::Kind::Join; }
};

class SubtractCmd : public Vs::Implements<SubtractCmd, CombineCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    Vs::CombineEdit::Kind kind() const override { return Vs::CombineEdit::Kind::Subtract; }
};

class IntersectCmd : public Vs::Implements<IntersectCmd, CombineCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    Vs::CombineEdit::Kind kind() const override { return Vs::CombineEdit::Kind::Intersect; }
};

/// Rounds edges. While the pointer is at an edge the body is shown as it was, since those are the edges that
/// can be chosen.
class FilletCmd : public Vs::Implements<FilletCmd, EditCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
    bool onPicksInsideBodies() const override { return true; }

    SelectionCommandInput* m_edges = nullptr;
    RealValueCommandInput* m_size = nullptr;
};

/// Cuts edges off.
class ChamferCmd : public Vs::Implements<ChamferCmd, FilletCmd>
{
public:
    static const EditRow kRow;
    using Implements::Implements;

protected:
    void onMakeInputs(EditInputs& inputs) override;
    Vs::ModelEdit onMakeEdit(const Vs::Asset& asset) override;
};

} // namespace Vu::Design
