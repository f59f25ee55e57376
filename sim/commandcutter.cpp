#include "commandcutter.h"

void CommandCutter::append(const QByteArray &bytes)
{
    m_buffer.append(bytes);
}

bool CommandCutter::next(QByteArray *command)
{
    for (;;) {
        const int close = m_buffer.indexOf('}');
        if (close < 0) {
            // Keep only what could still become a command.
            const int open = m_buffer.lastIndexOf('{');
            if (open < 0 || m_buffer.size() - open > MaxPartialCommand)
                m_buffer.clear();
            else if (open > 0)
                m_buffer.remove(0, open);
            return false;
        }
        const int open = m_buffer.lastIndexOf('{', close);
        if (open >= 0)
            *command = m_buffer.mid(open, close - open + 1);
        // A "}" with no "{" before it is junk like any other byte.
        m_buffer.remove(0, close + 1);
        if (open >= 0)
            return true;
    }
}
