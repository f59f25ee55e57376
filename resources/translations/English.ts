<?xml version='1.0' encoding='utf-8'?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>LoginDialog</name>
    <message>
        <source>Orvex系列视频切换软件</source>
        <translation>ORVEX SERIES VIDEO SWITCHING SOFTWARE</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Login</translation>
    </message>
    <message>
        <source>UserName</source>
        <translation>UserName</translation>
    </message>
    <message>
        <source>PassWord</source>
        <translation>PassWord</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Remember me</translation>
    </message>
    <message>
        <source>Connet Fail!</source>
        <translation>Connet Fail!</translation>
    </message>
    <message>
        <source>username or password error!</source>
        <translation>username or password error!</translation>
    </message>
    <message>
        <source>connect successful but software error!</source>
        <translation>connect successful but software error!</translation>
    </message>
    <message>
        <source>connect fail!</source>
        <translation>connect fail!</translation>
    </message>
</context>
<context>
    <name>LoginSettingDialog</name>
    <message>
        <source>设备连接设置</source>
        <translation>Device Connection</translation>
    </message>
    <message>
        <source>Device IP:</source>
        <translation>Device IP:</translation>
    </message>
    <message>
        <source>Port:</source>
        <translation>Port:</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>MsgDlg</name>
    <message>
        <source>提示</source>
        <translation>Notice</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>RenameDialog</name>
    <message>
        <source>重命名</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>新名称:</source>
        <translation>New Name:</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>cancel</translation>
    </message>
</context>
<context>
    <name>Usermanagerdialog</name>
    <message>
        <source>User Management</source>
        <translation>User Management</translation>
    </message>
    <message>
        <source>User List</source>
        <translation>User List</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>UserName</source>
        <translation>UserName</translation>
    </message>
    <message>
        <source>User Info</source>
        <translation>User Info</translation>
    </message>
    <message>
        <source>UserName:</source>
        <translation>UserName:</translation>
    </message>
    <message>
        <source>PassWord:</source>
        <translation>PassWord:</translation>
    </message>
    <message>
        <source>Repeat:</source>
        <translation>Repeat:</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Add</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Edit</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>two password not equation!</source>
        <translation>two password not equation!</translation>
    </message>
</context>
<context>
    <name>Widget</name>
    <message>
        <source>Usermanage</source>
        <translation>Usermanage</translation>
    </message>
    <message>
        <source>Connect Setting</source>
        <translation>Connect Setting</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Minimize</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>Maximize</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Orvex系列视频切换软件</source>
        <translation>ORVEX SERIES VIDEO SWITCHING SOFTWARE</translation>
    </message>
    <message>
        <source>refrensh</source>
        <translation>refrensh</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting</source>
        <translation>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected</source>
        <translation>OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected</source>
        <translation>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected</translation>
    </message>
</context>
</TS>