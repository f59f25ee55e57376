<?xml version='1.0' encoding='utf-8'?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>LoginDialog</name>
    <message>
        <source>Orvex系列视频切换软件</source>
        <translation>Orvex系列视频切换软件</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>登录</translation>
    </message>
    <message>
        <source>UserName</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>PassWord</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>记住密码</translation>
    </message>
    <message>
        <source>Connet Fail!</source>
        <translation>连接失败！</translation>
    </message>
    <message>
        <source>username or password error!</source>
        <translation>用户名或密码错误！</translation>
    </message>
    <message>
        <source>connect successful but software error!</source>
        <translation>连接成功，但软件出错！</translation>
    </message>
    <message>
        <source>connect fail!</source>
        <translation>连接失败！</translation>
    </message>
</context>
<context>
    <name>LoginSettingDialog</name>
    <message>
        <source>设备连接设置</source>
        <translation>设备连接设置</translation>
    </message>
    <message>
        <source>Device IP:</source>
        <translation>设备IP：</translation>
    </message>
    <message>
        <source>Port:</source>
        <translation>端口：</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>MsgDlg</name>
    <message>
        <source>提示</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>RenameDialog</name>
    <message>
        <source>重命名</source>
        <translation>重命名</translation>
    </message>
    <message>
        <source>新名称:</source>
        <translation>新名称:</translation>
    </message>
    <message>
        <source>cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>Usermanagerdialog</name>
    <message>
        <source>User Management</source>
        <translation>用户管理</translation>
    </message>
    <message>
        <source>User List</source>
        <translation>用户列表</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>编号</translation>
    </message>
    <message>
        <source>UserName</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>User Info</source>
        <translation>用户信息</translation>
    </message>
    <message>
        <source>UserName:</source>
        <translation>用户名：</translation>
    </message>
    <message>
        <source>PassWord:</source>
        <translation>密码：</translation>
    </message>
    <message>
        <source>Repeat:</source>
        <translation>确认密码：</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>编辑</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>two password not equation!</source>
        <translation>两次输入的密码不一致！</translation>
    </message>
</context>
<context>
    <name>Widget</name>
    <message>
        <source>Usermanage</source>
        <translation>用户管理</translation>
    </message>
    <message>
        <source>Connect Setting</source>
        <translation>连接设置</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>最大化</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Orvex系列视频切换软件</source>
        <translation>Orvex系列视频切换软件</translation>
    </message>
    <message>
        <source>refrensh</source>
        <translation>刷新</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 connecting</source>
        <translation>OrvexMatrixControl  用户:%3  IP:%1  端口:%2 正在连接</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3   Ip:%1  Port:%2  connected</source>
        <translation>OrvexMatrixControl  用户:%3   IP:%1  端口:%2  已连接</translation>
    </message>
    <message>
        <source>OrvexMatrixControl  User:%3  Ip:%1  Port:%2 disconnected</source>
        <translation>OrvexMatrixControl  用户:%3  IP:%1  端口:%2 已断开</translation>
    </message>
</context>
</TS>