#pragma once

#include "store/database.h"

#include <QString>

// The account tables of project.db: operators ("user"), whether the login
// dialog is shown at start ("loginmodel") and the "Remember me" state
// ("PasswordTable"). It holds no state, so every operation is static and may be
// called through any handle, an empty one included.
class AccountStore
{
public:
    // Creates the three tables and seeds ADMIN unless a row of that name exists.
    // A locked or unreadable file is left alone; the result says which it was.
    static StoreState createTables();

    // False at once when name or password is empty; false when the name is taken.
    static bool addUser(const QString &name, const QString &password);
    // True also when no row has that id.
    static bool deleteUser(int id);
    static bool updateUser(int id, const QString &name, const QString &password);

    // Replaces the whole remember-me row, so it also forgets the saved password.
    static bool setRemember(bool remember);
    // Stores the password and ticks "Remember me".
    static bool savePassword(const QString &password);
    static bool setLoginModel(int model);

    // Rows of id, username, type, password.
    static RowList allUsers();
    // Case-sensitive match of both name and password.
    static bool findUser(const QString &name, const QString &password);
    // 0: show the login dialog. Creates the row with 0 when there is none.
    static int loginModel();
    static bool isRemember();
    // Empty when nothing is remembered.
    static QString rememberedPassword();
};
